#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/VariableNames.h"
#include "standalone/Text/Text.h"

namespace velahost {

// How far the commands of a run reach: which variables of the working file a variable of a source
// was meant for, and which variables of a source found no namesake.
//
// The library tells nobody whom it pairs, and what it sets says too little: where a variable has
// the value already, or the command names no property, nothing is set. But all that it pairs by
// passes through the host: which file is the source, what the lists of variables stand for, and the
// names. So the host notes the lists as it gives them to the library, and pairs by the rule of the
// command itself:
//   TARGET with SOURCE   the targets are reached, by the one variable of SOURCE
//   otherwise            each variable of the list, or of the source, by its namesake
class Reach {
 public:
  // The source of a command; null is the working file.
  void SetSource(std::shared_ptr<const CodebookFile> file);
  // What the list of a subcommand, SOURCE or TARGET, stands for: columns, of the working file where
  // TARGET follows a SOURCE list and of the source otherwise; or names in the working file.
  void SetList(const std::string& subcommand, const std::vector<int>& columns);
  void SetNames(const std::vector<std::string>& targets) { command_.targetNames = targets; }
  // Whether a command has said something that EndCommand has not paired yet.
  bool IsInCommand() const { return command_.hasSource; }
  // The command has been carried out. working are the names of the working file's variables now.
  // REQUIRES: IsInCommand().
  void EndCommand(const VariableNames& working);

  // The columns of the working file, of the first `count`, that no command reached.
  std::vector<std::size_t> NotReached(std::size_t count) const;
  // The names of those variables of sources that a command looked for by name in vain, and that no
  // command carried to another variable. In the order of the sources and of their variables.
  std::vector<Text> NotPaired() const;

 private:
  // What a command says. A list that stands for nothing is as if absent, as it is to the library.
  struct Said {
    bool hasSource = false;
    std::shared_ptr<const CodebookFile> file;  // null: the working file
    std::vector<int> source;
    std::vector<int> target;
    std::vector<std::string> targetNames;
  };
  // What became of the variables of a source so far.
  struct OfSource {
    std::string path;
    std::size_t place;               // in the document
    std::vector<bool> isCarried;     // by column
    std::map<int, Text> isNotFound;  // names by column
  };

  void PairWithTargets(const VariableNames& working);
  void PairByName(const VariableNames& working);
  void MarkReached(int column);
  // Null where the source is the working file.
  OfSource* Source();

  Said command_;
  std::vector<bool> isReached_;  // by column of the working file
  std::vector<OfSource> sources_;
};

}  // namespace velahost
