#pragma once

#include <string>

namespace epg::test {

/// The bytes as one gzip member.
std::string gzipData(const std::string& bytes);

}  // namespace epg::test
