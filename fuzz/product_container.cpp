// A single-file product as it might arrive by mail or on a stick, read the way the programs read
// it (from a file). Every refusal must be a PackageError or a decoding error, never a crash, a
// leak or memory sized from what the file claims. What is accepted must hold together: files
// match their checksums and sizes, the checks and the flash plan run, the plan never writes two
// images over each other when the checks found no error, and saving it again reads back the same.
//
// Random bytes rarely get past a ZIP's CRCs and the record's checksums, so the custom mutator
// takes the container apart, mutates one entry (mostly product.json), usually mends the record's
// sizes and checksums to match the files, and builds a sound container around the result.
#include <cstdlib>
#include <fcntl.h>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <zip.h>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashCore/ProductPackage.hpp"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using namespace tarnwick;
using Entries = std::vector<std::pair<std::string, std::string>>;

// The entries of a container, CRCs or not; absent when it is no ZIP at all.
std::optional<Entries> unpack(const std::uint8_t* data, std::size_t size) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(data, size, 0, &error);
  zip_t* archive = source ? zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr;
  zip_error_fini(&error);
  if (!archive) {
    if (source) zip_source_free(source);
    return std::nullopt;
  }
  Entries entries;
  const zip_int64_t count = zip_get_num_entries(archive, 0);
  for (zip_int64_t i = 0; i < count && i < 64; ++i) {
    zip_stat_t stat;
    if (zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &stat) != 0 ||
        !(stat.valid & ZIP_STAT_NAME))
      continue;
    std::string bytes;
    if (zip_file_t* file = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0)) {
      char chunk[4096];
      zip_int64_t n;
      while ((n = zip_fread(file, chunk, sizeof chunk)) > 0 && bytes.size() < (1u << 20))
        bytes.append(chunk, static_cast<std::size_t>(n));
      zip_fclose(file);
    }
    entries.emplace_back(stat.name, std::move(bytes));
  }
  zip_discard(archive);
  return entries;
}

// A sound container around `entries`, the mimetype first and stored, as the programs write it.
std::string pack(const Entries& entries) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* buffer = zip_source_buffer_create(nullptr, 0, 0, &error);
  zip_error_fini(&error);
  if (!buffer) return {};
  zip_source_keep(buffer);
  zip_t* archive = zip_open_from_source(buffer, ZIP_TRUNCATE, nullptr);
  if (!archive) {
    zip_source_free(buffer);
    zip_source_free(buffer);
    return {};
  }
  for (const auto& [name, bytes] : entries) {
    zip_source_t* data = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
    zip_int64_t index = data ? zip_file_add(archive, name.c_str(), data, ZIP_FL_ENC_UTF_8) : -1;
    if (index < 0) {
      if (data) zip_source_free(data);
      continue;
    }
    zip_set_file_compression(archive, static_cast<zip_uint64_t>(index),
                             name == "mimetype" ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 0);
  }
  std::string result;
  if (zip_close(archive) != 0) {
    zip_discard(archive);
  } else if (zip_source_open(buffer) == 0) {
    char chunk[65536];
    zip_int64_t n;
    while ((n = zip_source_read(buffer, chunk, sizeof chunk)) > 0)
      result.append(chunk, static_cast<std::size_t>(n));
    zip_source_close(buffer);
  }
  zip_source_free(buffer);
  return result;
}

// Sets the size and checksum of every image whose stored file is among the entries, so that a
// mutation of the record is judged on what it changed, not stopped at the first checksum.
void mend(Entries& entries) {
  auto record = std::find_if(entries.begin(), entries.end(),
                             [](const auto& e) { return e.first == "product.json"; });
  if (record == entries.end()) return;
  // A record nested far deeper than any product is left as it is: it is refused anyway, and
  // writing it out again would take the mutator itself far beyond its memory.
  struct TooDeep {};
  nlohmann::json json;
  try {
    json = nlohmann::json::parse(
        record->second,
        [](int depth, nlohmann::json::parse_event_t, nlohmann::json&) {
          if (depth > 2 * maximumRecordNesting) throw TooDeep{};
          return true;
        },
        false);
  } catch (const TooDeep&) {
    return;
  }
  if (!json.is_object() || !json.contains("images") || !json["images"].is_array()) return;
  for (auto& image : json["images"]) {
    if (!image.is_object() || !image["id"].is_string() || !image["fileName"].is_string()) continue;
    std::string prefix = image["id"].get<std::string>().substr(0, 8);
    for (auto& c : prefix)
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const std::string stored = "files/" + prefix + "-" + image["fileName"].get<std::string>();
    for (const auto& [name, bytes] : entries) {
      if (name != stored) continue;
      image["size"] = bytes.size();
      image["sha256"] = Digest::sha256Hex(
          ByteView(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
    }
  }
  record->second = json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
}

// Reads the container through a file, as the desktop and the command line do.
ProductPackage readAsFile(const std::uint8_t* data, std::size_t size) {
  const int fd = ::memfd_create("product.twflash", MFD_CLOEXEC);
  if (fd < 0) std::abort();
  struct Closer {
    int fd;
    ~Closer() { ::close(fd); }
  } closer{fd};
  for (std::size_t done = 0; done < size;) {
    const ssize_t n = ::write(fd, data + done, size - done);
    if (n <= 0) std::abort();
    done += static_cast<std::size_t>(n);
  }
  return ProductPackage::read("/proc/self/fd/" + std::to_string(fd));
}

void checkAccepted(const ProductPackage& package) {
  for (const auto& image : package.product.images) {
    auto file = package.files.find(image.id);
    if (file == package.files.end() || Digest::sha256Hex(file->second) != image.sha256 ||
        static_cast<std::uintmax_t>(image.size) != file->second.size())
      std::abort();
  }
  const auto issues = ProductCheck::check(package.product, package.files);
  if (!ProductCheck::firstError(issues) && package.product.target.isESP()) {
    const ESPChip chip = package.product.target.espChip().value_or(ESPChip::esp32);
    const auto writes = FlashPlan::writes(package.product, package.files, chip);
    FlashPlan::flashSize(writes, package.product);
    for (std::size_t i = 1; i < writes.size(); ++i) {
      if (writes[i - 1].offset + writes[i - 1].data.size() > writes[i].offset) std::abort();
    }
  }
  // Saved again, it reads back as the same product. Only a file name that a product file may
  // hold but this version does not write (a control character in it) stops the saving.
  Bytes again;
  try {
    again = ProductPackage::encode(package);
  } catch (const PackageError& error) {
    if (!std::holds_alternative<PackageError::UnstorableName>(error.value)) std::abort();
    return;
  }
  try {
    if (!(ProductPackage::decode(again) == package)) std::abort();
  } catch (...) {
    std::abort();
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    checkAccepted(readAsFile(data, size));
  } catch (const PackageError&) {
  } catch (const ProductDecodingError&) {
  }
  return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
  std::minstd_rand random(seed);
  auto entries = unpack(data, size);
  if (!entries || entries->empty() || random() % 16 == 0)
    return LLVMFuzzerMutate(data, size, maxSize);

  // Mostly the record; sometimes a file, a name, or an entry more or less.
  const std::size_t pick = random() % 4 == 0 ? random() % entries->size() : [&] {
    for (std::size_t i = 0; i < entries->size(); ++i)
      if ((*entries)[i].first == "product.json") return i;
    return std::size_t{0};
  }();
  auto& [name, bytes] = (*entries)[pick];
  switch (random() % 8) {
  case 0: {
    std::string mutated = name;
    mutated.resize(mutated.size() + 8);
    mutated.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(mutated.data()), name.size(),
                                    mutated.size()));
    name = mutated;
    break;
  }
  case 1: entries->erase(entries->begin() + static_cast<std::ptrdiff_t>(pick)); break;
  case 2: entries->push_back((*entries)[pick]); break;
  default: {
    const std::size_t room = bytes.size() + 256;
    bytes.resize(room);
    bytes.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(bytes.data()), room - 256, room));
  }
  }
  if (random() % 4 != 0) mend(*entries);
  const std::string rebuilt = pack(*entries);
  if (rebuilt.empty() || rebuilt.size() > maxSize) return LLVMFuzzerMutate(data, size, maxSize);
  std::copy(rebuilt.begin(), rebuilt.end(), data);
  return rebuilt.size();
}
