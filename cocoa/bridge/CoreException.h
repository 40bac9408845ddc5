#pragma once

#include <exception>
#include <functional>

namespace epg::cocoa {

/// Runs the body; an exception of C++ that comes out of it ends with `handle`.
/// In a file of plain C++, because Objective-C++ that clang compiles for GCC's runtime catches none.
void runCatching(const std::function<void()>& body, const std::function<void(const std::exception&)>& handle);

}  // namespace epg::cocoa
