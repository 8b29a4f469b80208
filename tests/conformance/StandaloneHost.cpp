#include <velawapd/conformance/Conformance.h>

#include <memory>

#include "standalone/Host/Host.h"

// What the tests for hosts need of the standalone host: a codebook to work on.

void conformance::OpenWorking(const std::vector<Sample>& samples) {
  std::string text = "<codeBook><dataDscr>";
  for (const Sample& sample : samples) {
    text += "<var name='" + sample.name + "'>";
    if (sample.label) text += "<labl>" + *sample.label + "</labl>";
    if (!sample.missing.empty()) text += "<invalrng>";
    for (const std::string& value : sample.missing) text += "<item VALUE='" + value + "'/>";
    if (!sample.missing.empty()) text += "</invalrng>";
    for (const auto& [value, label] : sample.valueLabels) {
      text += "<catgry><catValu>" + value + "</catValu><labl>" + label + "</labl></catgry>";
    }
    text += sample.type == 0
                ? "<varFormat/>"
                : "<varFormat type='character' formatname='A" + std::to_string(sample.type) + "'/>";
    for (const auto& [name, value] : sample.attributes) {
      text +=
          "<notes type='VELA:attribute' level='var' subject='" + name + "'>" + value + "</notes>";
    }
    text += "</var>";
  }
  text += "</dataDscr></codeBook>";
  static std::unique_ptr<velahost::Host> host;
  host.reset();  // there is one at a time
  host = std::make_unique<velahost::Host>();
  host->SetWorking(velahost::OpenCodebook("samples", velahost::Bytes(text), {}));
}
