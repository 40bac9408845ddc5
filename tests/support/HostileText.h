#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace epg::test {

std::string joined(const std::vector<std::string>& parts);

/// UTF-8 with all that a writer of XML has to look after, between plain runs of any length.
std::string hostileText();

/// The same, in about one case of `cases` with something in it that is not UTF-8.
std::string mostlyUTF8(std::size_t cases);

}  // namespace epg::test
