#include "host/guide/InputFile.h"

#include <cerrno>
#include <cstddef>
#include <system_error>
#include <utility>

#include "host/guide/Gzip.h"
#include "host/terminal/Refusal.h"
#include "platform/Environment.h"

namespace epg {

std::string systemMessage(int error) {
  // What the environment returns for a folder, a device and the like.
  if (error == EINVAL) return "Not a regular file";
  return std::generic_category().message(error);
}

std::string readInputFile(Environment& environment, const std::string& path) {
  std::string content;
  const int error = readWholeFile(environment, path, &content);
  if (error != 0) throw Refusal(path + ": " + systemMessage(error));
  return content;
}

std::string readDecompressedFile(Environment& environment, const std::string& path) {
  constexpr std::size_t largestFile = std::size_t{1} << 30;
  std::string bytes = readInputFile(environment, path);
  if (!isGzip(bytes)) return bytes;
  std::string problem;
  std::optional<std::string> text = decompressedGzip(bytes, largestFile, &problem);
  if (!text) throw Refusal(path + ": " + problem);
  return std::move(*text);
}

std::optional<std::string> contentIfThere(Environment& environment, const std::string& path) {
  std::string content;
  const int error = readWholeFile(environment, path, &content);
  if (error == 0) return content;
  Environment::FileInfo info;
  if (error != ENOENT) throw Refusal(path + ": " + systemMessage(error));
  if (environment.pathInfo(path, &info) != 0) return std::nullopt;
  throw Refusal(path + (info.kind == Environment::FileKind::Link ? ": a link to a file that is not there"
                                                                 : ": was not there at the first try"));
}

}  // namespace epg
