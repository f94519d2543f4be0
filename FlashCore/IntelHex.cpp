#include "FlashCore/IntelHex.hpp"

#include <algorithm>
#include <array>
#include <memory>
#include <unordered_map>

#include "Localization/HexTexts.hpp"

namespace tarnwick::IntelHex {

namespace {

template <class... F> struct Overloaded : F... { using F::operator()...; };
template <class... F> Overloaded(F...) -> Overloaded<F...>;

// Records may arrive in any order and overlap, so bytes are collected sparsely and laid out once
// at the end. Unwritten bytes of a page stay 0xFF, which is also what the image shows in gaps, so
// a page needs no record of which bytes were written.
class SparseImage {
public:
  void store(std::int64_t address, std::uint8_t value) {
    const std::int64_t pageNumber = address >> pageBits;
    if (pageNumber != lastPageNumber_ || lastPage_ == nullptr) {
      auto& slot = pages_[pageNumber];
      if (!slot) {
        slot = std::make_unique<Page>();
        slot->fill(0xFF);
      }
      lastPage_ = slot.get();
      lastPageNumber_ = pageNumber;
    }
    (*lastPage_)[static_cast<std::size_t>(address & pageMask)] = value;
    highest_ = std::max(highest_, address);
  }

  std::int64_t highest() const { return highest_; }

  Bytes layOut() const {
    Bytes image(static_cast<std::size_t>(highest_ + 1), 0xFF);
    for (const auto& [pageNumber, page] : pages_) {
      const std::int64_t start = pageNumber << pageBits;
      const std::int64_t count = std::min<std::int64_t>(pageSize, highest_ + 1 - start);
      std::copy_n(page->begin(), count, image.begin() + start);
    }
    return image;
  }

private:
  static constexpr int pageBits = 12;
  static constexpr std::int64_t pageSize = std::int64_t{1} << pageBits;
  static constexpr std::int64_t pageMask = pageSize - 1;
  using Page = std::array<std::uint8_t, pageSize>;

  std::unordered_map<std::int64_t, std::unique_ptr<Page>> pages_;
  Page* lastPage_ = nullptr;
  std::int64_t lastPageNumber_ = -1;
  std::int64_t highest_ = -1;
};

// Value of a hexadecimal digit, or -1.
constexpr std::array<std::int8_t, 256> hexDigitTable = [] {
  std::array<std::int8_t, 256> table{};
  table.fill(-1);
  for (int c = '0'; c <= '9'; ++c)
    table[c] = static_cast<std::int8_t>(c - '0');
  for (int c = 'A'; c <= 'F'; ++c)
    table[c] = static_cast<std::int8_t>(c - 'A' + 10);
  for (int c = 'a'; c <= 'f'; ++c)
    table[c] = static_cast<std::int8_t>(c - 'a' + 10);
  return table;
}();

// Length in bytes of the line break starting at `i`, or 0. Besides the ASCII breaks the text may
// hold the UTF-8 forms of NEL, LINE SEPARATOR and PARAGRAPH SEPARATOR.
std::size_t lineBreakLength(std::string_view text, std::size_t i) {
  const auto c = static_cast<unsigned char>(text[i]);
  if (c >= 0x0A && c <= 0x0D) return 1;
  if (c == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) == 0x85) return 2;
  if (c == 0xE2 && i + 2 < text.size() && static_cast<unsigned char>(text[i + 1]) == 0x80) {
    const auto last = static_cast<unsigned char>(text[i + 2]);
    if (last == 0xA8 || last == 0xA9) return 3;
  }
  return 0;
}

struct Reader {
  explicit Reader(std::int64_t limit) : limit(limit) {}

  std::int64_t limit;
  std::int64_t base = 0;
  SparseImage image;
  std::array<std::uint8_t, 260> record{}; // at most 0xFF data bytes plus five

  void readLine(std::string_view line, std::int64_t number) {
    while (!line.empty() && (line.front() == ' ' || line.front() == '\t'))
      line.remove_prefix(1);
    while (!line.empty() && (line.back() == ' ' || line.back() == '\t'))
      line.remove_suffix(1);
    if (line.empty()) return;

    const ParseError invalid{ParseError::invalidLine{number}};
    if (line.front() != ':' || line.size() < 11 || line.size() % 2 == 0) throw invalid;
    const std::size_t count = (line.size() - 1) / 2;
    // Any longer line cannot match its length byte, which is at most 0xFF.
    if (count > record.size()) throw invalid;
    for (std::size_t k = 0; k < count; ++k) {
      const int high = hexDigitTable[static_cast<unsigned char>(line[1 + 2 * k])];
      const int low = hexDigitTable[static_cast<unsigned char>(line[2 + 2 * k])];
      if (high < 0 || low < 0) throw invalid;
      record[k] = static_cast<std::uint8_t>(high << 4 | low);
    }
    const std::size_t length = record[0];
    if (count != length + 5) throw invalid;
    unsigned sum = 0;
    for (std::size_t k = 0; k < count; ++k)
      sum += record[k];
    if (sum % 256 != 0) throw ParseError{ParseError::checksum{number}};

    const std::uint8_t* data = record.data() + 4;
    switch (record[3]) {
    case 0x00: {
      // Addresses count on past 0xFFFF: the offset does not wrap inside its segment.
      const std::int64_t start = base + record[1] * 256 + record[2];
      for (std::size_t k = 0; k < length; ++k) {
        const std::int64_t address = start + static_cast<std::int64_t>(k);
        if (address >= limit) throw ParseError{ParseError::tooLarge{}};
        image.store(address, data[k]);
      }
      return;
    }
    case 0x02:
      if (length != 2) throw invalid;
      base = (std::int64_t{data[0]} * 256 + data[1]) * 16;
      return;
    case 0x04:
      if (length != 2) throw invalid;
      base = (std::int64_t{data[0]} * 256 + data[1]) * 65536;
      return;
    case 0x01: // end of file: later lines still count
    case 0x03: // start addresses mean nothing to a flashed image
    case 0x05: return;
    default: throw invalid;
    }
  }
};

} // namespace

std::string ParseError::message() const {
  return std::visit(
      Overloaded{[](const invalidLine& e) { return L10n::Errors::hexInvalidLine(e.line); },
                 [](const checksum& e) { return L10n::Errors::hexChecksum(e.line); },
                 [](const noData&) { return L10n::Errors::hexNoData(); },
                 [](const tooLarge&) { return L10n::Errors::hexTooLarge(); }},
      value);
}

Bytes parse(std::string_view text, std::int64_t limit) {
  Reader reader(limit);
  std::int64_t number = 0;
  std::size_t start = 0;
  std::size_t i = 0;
  auto finishPiece = [&](std::size_t end) {
    if (end > start) reader.readLine(text.substr(start, end - start), ++number);
  };
  while (i < text.size()) {
    if (const std::size_t breakLength = lineBreakLength(text, i)) {
      finishPiece(i);
      i += breakLength;
      start = i;
    } else {
      ++i;
    }
  }
  finishPiece(text.size());

  if (reader.image.highest() < 0) throw ParseError{ParseError::noData{}};
  return reader.image.layOut();
}

} // namespace tarnwick::IntelHex
