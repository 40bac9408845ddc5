#pragma once

#include <string>

#include "host/terminal/Refusal.h"

namespace epg::test {

/// The message with which the work is refused.
template <typename Work>
std::string refusalOf(const Work& work) {
  try {
    work();
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "not refused";
}

}  // namespace epg::test
