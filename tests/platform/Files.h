#pragma once

#include <string>

#include "platform/Environment.h"

namespace epg::test {

/// "(missing)" where there is none.
std::string contentOrMissing(const std::string& path);

/// Of the path itself; a failure of the test and an empty info where there is nothing.
Environment::FileInfo infoOf(const std::string& path);

/// How many descriptors this process has open.
int openDescriptors();

}  // namespace epg::test
