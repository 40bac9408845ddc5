#pragma once

#include <string>

namespace epg {

/// An error as the host sees it: a domain, the code and the message for people.
struct EPGError {
  static constexpr int onlyCode = -1;

  std::string domain;
  int code = onlyCode;
  std::string localizedDescription;
};

/// Only for the refusal of an export while another one runs.
extern const char* const shortErrorDomain;
/// For every other error.
extern const char* const longErrorDomain;

}  // namespace epg
