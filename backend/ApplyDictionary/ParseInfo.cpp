#include "backend/ApplyDictionary/ParseInfo.h"

#include <span>
#include <string>
#include <vector>

#include "backend/ApplyDictionary/ApplyDictionarySpec.h"
#include "backend/ApplyDictionary/KeywordValues.h"
#include "host/Syntax.h"

namespace {

using Record = ApplyDictionarySpec;

// A keyword and the field that it sets: a flag or a mode. The other one is null.
struct Item {
  const char* keyword;
  bool Record::*flag;
  ApplyMode Record::*mode;
  ApplyMode bareMode;  // what the keyword without a value sets a mode to
  ApplyMode allMode;   // what ALL sets a mode to
};

constexpr Item Flag(const char* keyword, bool Record::*field) {
  return {keyword, field, nullptr, ApplyNone, ApplyNone};
}

constexpr Item Mode(const char* keyword, ApplyMode Record::*field, ApplyMode bareMode,
                    ApplyMode allMode) {
  return {keyword, nullptr, field, bareMode, allMode};
}

// File attributes are replaced when they are named without a value, but merged under ALL: no slip.
constexpr Item kFileInfo[] = {
    Mode("DOCUMENTS", &Record::fileDocuments, ApplyMerge, ApplyMerge),
    Flag("FILELABEL", &Record::fileLabel),
    Mode("MRSETS", &Record::fileMrSets, ApplyMerge, ApplyMerge),
    Mode("VARSETS", &Record::fileVarSets, ApplyMerge, ApplyMerge),
    Flag("WEIGHT", &Record::fileWeight),
    Mode("ATTRIBUTES", &Record::fileAttributes, ApplyReplace, ApplyMerge),
};

constexpr Item kVarInfo[] = {
    Flag("ALIGNMENT", &Record::varAlignment),
    Flag("FORMATS", &Record::varFormats),
    Flag("LEVEL", &Record::varLevel),
    Flag("MISSING", &Record::varMissing),
    Flag("ROLE", &Record::varRole),
    Mode("VALLABELS", &Record::varValLabels, ApplyReplace, ApplyReplace),
    Flag("VARLABEL", &Record::varLabel),
    Flag("WIDTH", &Record::varWidth),
    Mode("ATTRIBUTES", &Record::varAttributes, ApplyReplace, ApplyReplace),
};

constexpr const char* kAll = "ALL";

// The items' keywords and ALL, as the host takes them: ended by an empty text.
std::vector<std::string> KeywordTable(std::span<const Item> items) {
  std::vector<std::string> keywords;
  keywords.reserve(items.size() + 2);
  for (const Item& item : items) keywords.emplace_back(item.keyword);
  keywords.emplace_back(kAll);
  keywords.emplace_back();
  return keywords;
}

void SetByAll(const Item& item, bool all, ApplyDictionarySpec& record) {
  if (item.flag != nullptr) {
    record.*item.flag = all;
  } else {
    record.*item.mode = all ? item.allMode : ApplyNone;
  }
}

void SetByKeyword(const Item& item, KeywordSubcommand& subcommand, ApplyDictionarySpec& record) {
  if (item.flag != nullptr) {
    record.*item.flag = KeywordFlag(subcommand, item.keyword);
  } else {
    record.*item.mode = KeywordMode(subcommand, item.keyword, item.bareMode);
  }
}

void ParseInfo(ParsedCommand& command, const std::string& name, std::span<const Item> items,
               ApplyDictionarySpec& record) {
  const std::vector<std::string> keywords = KeywordTable(items);
  KeywordSubcommand subcommand(command, name, keywords.data());
  if (!subcommand.Occurs()) return;

  const bool all = KeywordFlag(subcommand, kAll);
  for (const Item& item : items) SetByAll(item, all, record);
  for (const Item& item : items) {
    if (subcommand.Tokens(item.keyword) != 0) SetByKeyword(item, subcommand, record);
  }
}

}  // namespace

void ParseFileInfo(ParsedCommand& command, ApplyDictionarySpec& record) {
  ParseInfo(command, "FILEINFO", kFileInfo, record);
}

void ParseVarInfo(ParsedCommand& command, ApplyDictionarySpec& record) {
  ParseInfo(command, "VARINFO", kVarInfo, record);
}
