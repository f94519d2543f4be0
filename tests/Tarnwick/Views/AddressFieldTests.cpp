// The address entry as a user types into it, and the text rules behind it.
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include "Tarnwick/Views/AddressField.hpp"

namespace tarnwick {
namespace {

TEST(AddressField, ParsesTypedAddresses) {
  struct Case {
    const char* text;
    std::optional<std::uint32_t> value;
  };
  const Case cases[] = {
      {" 0X1000 ", 0x1000},
      {"1000", 0x1000},
      {"\t0x10000\t", 0x10000},
      {"+ff", 0xFF},
      {"0x+1A", 0x1A},
      {"FFFFFFFF", 0xFFFFFFFFu},
      {"0x0", 0},
      {"0x", std::nullopt},
      {"0x1G", std::nullopt},
      {"100000000", std::nullopt},
      {"0x000000001", 1},
      {"", std::nullopt},
      {"   ", std::nullopt},
      {"0x 10", std::nullopt},
      {"-10", std::nullopt},
      {"0x0x10", std::nullopt},
      {"++1", std::nullopt},
      {"10\n", std::nullopt},
  };
  for (const Case& c : cases)
    EXPECT_EQ(parseAddress(QString::fromUtf8(c.text)), c.value) << '"' << c.text << '"';
}

TEST(AddressField, StoresWhileTypingMarksInvalidTextAndRestoresOnLeaving) {
  QWidget window;
  auto* field = new AddressField(&window);
  auto* other = new QLineEdit(&window);
  other->move(0, 40);
  field->setAddress(0x8000);
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  field->setFocus();
  field->selectAll();
  QSignalSpy edited(field, &AddressField::addressEdited);

  QTest::keyClicks(field, "0x1");
  // "0" stores 0, "0x" is invalid, "0x1" stores 1.
  ASSERT_EQ(edited.size(), 2);
  EXPECT_EQ(edited.at(1).at(0).value<std::uint32_t>(), 1u);
  QTest::keyClicks(field, "G");
  EXPECT_TRUE(field->isMarkedInvalid());
  EXPECT_EQ(field->address(), 1u);
  EXPECT_EQ(edited.size(), 2);
  // The mark is said in words too, to a screen reader and as the mark's tooltip.
  EXPECT_EQ(field->accessibleDescription(), "0x1G: not a valid address");

  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(field->text(), "0x1");
  EXPECT_FALSE(field->isMarkedInvalid());
  EXPECT_EQ(field->accessibleDescription(), "");

  field->selectAll();
  QTest::keyClicks(field, "zz");
  EXPECT_TRUE(field->isMarkedInvalid());
  other->setFocus();
  EXPECT_EQ(field->text(), "0x1");
  EXPECT_FALSE(field->isMarkedInvalid());

  // An emptied field is neither marked nor stored.
  field->setFocus();
  field->selectAll();
  QTest::keyClick(field, Qt::Key_Backspace);
  EXPECT_FALSE(field->isMarkedInvalid());
  EXPECT_EQ(field->address(), 1u);
  // Typing the same value again is not a change.
  QTest::keyClicks(field, "1");
  EXPECT_EQ(edited.size(), 2);
}

} // namespace
} // namespace tarnwick
