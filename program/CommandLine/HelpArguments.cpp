#include <string>
#include <vector>

#include "program/CommandLine/Arguments.h"
#include "program/Failure.h"
#include "program/Help/ProgramPages.h"
#include "program/Help/Topics.h"
#include "standalone/Text/Suggestion.h"

namespace applydic {
namespace {

constexpr const char* kDescription =
    "Explain a command, what APPLY DICTIONARY can do, or a message.";

constexpr const char* kExamples =
    "Topics:\n"
    "  apply, check, ...           A command of the program, as its --help\n"
    "  command                     The command APPLY DICTIONARY: subcommands, keywords, rules\n"
    "  messages                    Every message: what happened, why, and what to do\n"
    "  messages TEXT               The messages with this text in them\n"
    "  man, bash, zsh, fish        The manual page, and completion for a shell, as files have "
    "them\n"
    "\n"
    "Examples:\n"
    "  applydic help command\n"
    "  applydic help messages too long";

class HelpArguments : public Arguments {
 public:
  explicit HelpArguments(CLI::App& program)
      : Arguments(program, "help", kDescription, kExamples), program_(program) {
    DeclareNames("TOPIC", "What to explain; of messages with a text", words_);
  }

  Request Read() const override {
    if (words_.empty()) return Answer{Overview()};
    const std::string& topic = words_.front();
    if (topic == "messages") return Answer{MessagesHelp(TextBehindTopic())};
    if (words_.size() > 1) Refuse("More than one topic is given");
    if (topic == "command") return Answer{CommandHelp()};
    if (topic == "man") return Answer{ManPage(program_)};
    if (topic == "bash") return Answer{BashCompletion(program_)};
    if (topic == "zsh") return Answer{ZshCompletion(program_)};
    if (topic == "fish") return Answer{FishCompletion(program_)};
    if (const CLI::App* command = CommandNamed(topic))
      return Answer{command->help(program_.get_name())};
    RefuseTopic(topic);
  }

 private:
  // The program's own help; asked itself, it gives that of the command that is parsed.
  std::string Overview() const {
    return program_.get_formatter()->make_help(&program_, "", CLI::AppFormatMode::Normal);
  }

  std::string TextBehindTopic() const {
    std::string text;
    for (std::size_t i = 1; i < words_.size(); ++i) text += (i == 1 ? "" : " ") + words_[i];
    return text;
  }

  const CLI::App* CommandNamed(const std::string& name) const {
    for (const CLI::App* command : program_.get_subcommands({})) {
      if (command->get_name() == name) return command;
    }
    return nullptr;
  }

  [[noreturn]] void RefuseTopic(const std::string& topic) const {
    std::vector<std::string> topics = {"command", "messages"};
    for (const CLI::App* command : program_.get_subcommands({})) {
      topics.push_back(command->get_name());
    }
    const std::string_view nearest = velahost::Nearest(topic, {topics.begin(), topics.end()});
    const std::string meant =
        nearest.empty() ? "" : "Did you mean '" + std::string(nearest) + "'? ";
    throw Failure("There is no topic '" + topic + "'. " + meant +
                  "'applydic help --help' lists them.");
  }

  const CLI::App& program_;
  std::vector<std::string> words_;
};

}  // namespace

std::unique_ptr<Arguments> MakeHelpArguments(CLI::App& program) {
  return std::make_unique<HelpArguments>(program);
}

}  // namespace applydic
