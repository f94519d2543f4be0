#include "FlashCore/Digest.hpp"

#include <memory>
#include <openssl/evp.h>
#include <stdexcept>

namespace tarnwick::Digest {

namespace {

Bytes digest(const EVP_MD* algorithm, ByteView bytes) {
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                  EVP_MD_CTX_free);
  unsigned char out[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (!context || EVP_DigestInit_ex(context.get(), algorithm, nullptr) != 1 ||
      EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()) != 1 ||
      EVP_DigestFinal_ex(context.get(), out, &length) != 1) {
    // Only an allocation failure inside OpenSSL gets here.
    throw std::runtime_error("digest computation failed");
  }
  return Bytes(out, out + length);
}

std::string hex(const Bytes& bytes) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (std::uint8_t byte : bytes) {
    text += digits[byte >> 4];
    text += digits[byte & 0x0F];
  }
  return text;
}

} // namespace

std::string sha256Hex(ByteView bytes) { return hex(digest(EVP_sha256(), bytes)); }
std::string md5Hex(ByteView bytes) { return hex(digest(EVP_md5(), bytes)); }
Bytes sha256(ByteView bytes) { return digest(EVP_sha256(), bytes); }
Bytes md5(ByteView bytes) { return digest(EVP_md5(), bytes); }

} // namespace tarnwick::Digest
