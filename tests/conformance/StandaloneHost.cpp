#include <velawapd/conformance/Conformance.h>

#include <memory>
#include <string>

#include "standalone/Host/Host.h"

// What the tests for hosts need of the standalone host: a codebook to work on.

namespace {

std::string FormatOf(int type) {
  if (type == 0) return "<varFormat/>";
  return "<varFormat type='character' formatname='A" + std::to_string(type) + "'/>";
}

std::string NoteOf(const std::string& name, const std::string& value) {
  return "<notes type='VELA:attribute' level='var' subject='" + name + "'>" + value + "</notes>";
}

}  // namespace

void conformance::OpenWorking(const std::vector<Sample>& samples) {
  std::string text = "<codeBook><dataDscr>";
  for (const Sample& sample : samples) {
    text += "<var name='" + sample.name + "'>";
    if (sample.label) text += "<labl>" + *sample.label + "</labl>";
    if (!sample.missing.empty()) text += "<invalrng>";
    for (const std::string& value : sample.missing) text += "<item VALUE='" + value + "'/>";
    if (!sample.missing.empty()) text += "</invalrng>";
    for (const auto& [value, label] : sample.valueLabels) {
      text += "<catgry><catValu>" + value + "</catValu>";
      text += "<labl>" + label + "</labl></catgry>";
    }
    text += FormatOf(sample.type);
    for (const auto& [name, value] : sample.attributes) {
      text += NoteOf(name, value);
    }
    text += "</var>";
  }
  text += "</dataDscr></codeBook>";
  static std::unique_ptr<velahost::Host> host;
  host.reset();  // there is one at a time
  host = std::make_unique<velahost::Host>();
  host->SetWorking(velahost::OpenCodebook("samples", velahost::Bytes(text), {}));
}
