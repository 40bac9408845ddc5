#include "host/guide/SHA256.h"

#include <array>
#include <cstddef>
#include <cstdint>

#ifdef __APPLE__
#include <CommonCrypto/CommonDigest.h>
#else
#include <nettle/sha2.h>
#endif

namespace epg {

namespace {

using Digest = std::array<std::uint8_t, 32>;

Digest digestOf(const std::string& bytes) {
  Digest digest{};
#ifdef __APPLE__
  // The length of one call is a 32-bit number. CC_SHA256(3cc)
  CC_SHA256_CTX context;
  CC_SHA256_Init(&context);
  constexpr std::size_t most = std::size_t{1} << 30;
  for (std::size_t at = 0; at < bytes.size(); at += most) {
    const std::size_t size = bytes.size() - at < most ? bytes.size() - at : most;
    CC_SHA256_Update(&context, bytes.data() + at, static_cast<CC_LONG>(size));
  }
  CC_SHA256_Final(digest.data(), &context);
#else
  sha256_ctx context{};
  sha256_init(&context);
  sha256_update(&context, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
  sha256_digest(&context, digest.size(), digest.data());
#endif
  return digest;
}

}  // namespace

std::string sha256(const std::string& bytes) {
  static const char digits[] = "0123456789abcdef";
  const Digest digest = digestOf(bytes);
  std::string text(2 * digest.size(), '0');
  for (std::size_t i = 0; i < digest.size(); ++i) {
    text[2 * i] = digits[digest[i] >> 4];
    text[2 * i + 1] = digits[digest[i] & 0xF];
  }
  return text;
}

}  // namespace epg
