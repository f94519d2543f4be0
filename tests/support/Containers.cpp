#include "support/Containers.hpp"

#include <cstdint>
#include <stdexcept>
#include <zip.h>

namespace tarnwick::testing {

std::string zipOf(const std::vector<ZipEntry>& entries) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* buffer = zip_source_buffer_create(nullptr, 0, 0, &error);
  zip_error_fini(&error);
  if (!buffer) throw std::runtime_error("no memory for a container");
  zip_source_keep(buffer);
  zip_t* archive = zip_open_from_source(buffer, ZIP_TRUNCATE, nullptr);
  if (!archive) {
    zip_source_free(buffer);
    zip_source_free(buffer);
    throw std::runtime_error("cannot make a container");
  }
  for (const ZipEntry& entry : entries) {
    zip_source_t* source = zip_source_buffer(archive, entry.data.data(), entry.data.size(), 0);
    const zip_int64_t index =
        source ? zip_file_add(archive, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8) : -1;
    if (index < 0) {
      if (source) zip_source_free(source);
      zip_discard(archive);
      zip_source_free(buffer);
      throw std::runtime_error("the container takes no entry " + entry.name);
    }
    const auto i = static_cast<zip_uint64_t>(index);
    zip_set_file_compression(archive, i, entry.stored ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 0);
    if (entry.unixMode) {
      zip_file_set_external_attributes(archive, i, 0, ZIP_OPSYS_UNIX, *entry.unixMode << 16);
    }
  }
  if (zip_close(archive) != 0) {
    zip_discard(archive);
    zip_source_free(buffer);
    throw std::runtime_error("cannot finish a container");
  }
  zip_stat_t stat;
  zip_stat_init(&stat);
  std::string bytes;
  if (zip_source_stat(buffer, &stat) == 0 && zip_source_open(buffer) == 0) {
    bytes.resize(stat.size);
    const zip_int64_t read = zip_source_read(buffer, bytes.data(), bytes.size());
    zip_source_close(buffer);
    bytes.resize(read < 0 ? 0 : static_cast<std::size_t>(read));
  }
  zip_source_free(buffer);
  return bytes;
}

std::string patched(std::string bytes, const std::string& from, const std::string& to) {
  for (auto at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at + 1))
    bytes.replace(at, from.size(), to);
  return bytes;
}

namespace {

void putLittle32(std::string& bytes, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i)
    bytes[at + i] = static_cast<char>(value >> (8 * i));
}

} // namespace

std::string withDeclaredSize(std::string bytes, const std::string& name, std::uint32_t size) {
  for (auto at = bytes.find(name); at != std::string::npos; at = bytes.find(name, at + 1)) {
    if (at >= 30 && bytes.compare(at - 30, 4, "PK\x03\x04") == 0)
      putLittle32(bytes, at - 30 + 22, size);
    if (at >= 46 && bytes.compare(at - 46, 4, "PK\x01\x02") == 0)
      putLittle32(bytes, at - 46 + 24, size);
  }
  return bytes;
}

} // namespace tarnwick::testing
