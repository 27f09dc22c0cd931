#include "link/globals.h"

#include "platform/faults.h"

namespace dpm {

Globals g;

void ResetGlobals() { g = Globals{}; }

const std::array<std::string, 33>& ControlNames() {
  static const std::array<std::string, 33> names = [] {
    const std::string all = std::string("nulsohstxetxeotenqackbelbs ht lf vt ff cr so si dle") +
                            "dc1dc2dc3dc4naksynetbcanem subescfs gs rs us sp ";
    std::array<std::string, 33> table;
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = all.substr(3 * i, 3);
    return table;
  }();
  return names;
}

std::string CharName(int16_t code) {
  if (code < 0) throw IndexFault("Subscript out of range: character code " + std::to_string(code));
  if (code >= 33) return std::string(1, static_cast<char>(code));
  return ControlNames()[static_cast<std::size_t>(code)];
}

}  // namespace dpm
