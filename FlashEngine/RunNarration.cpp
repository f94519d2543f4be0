#include "FlashEngine/RunNarration.hpp"

#include "FlashCore/ESPChip.hpp"
#include "FlashCore/VisibleText.hpp"
#include "FlashSerial/PortScanner.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"

namespace tarnwick::RunNarration {

namespace {
using Kind = LogSegment::Kind;
// Names of products, files and ports come from product files and devices: whatever control
// or direction characters they hold is shown, never obeyed, by every front end.
LogSegment line(Kind kind, const std::string& text) { return {kind, visibleLines(text)}; }
} // namespace

LogSegment opening(const std::string& productName, const std::string& portLabel) {
  std::string name = productName.empty() ? L10n::Product::newProduct() : productName;
  return line(Kind::system, "--- " + L10n::Log::flashingOn(name, portLabel) + " ---");
}

NarratedStep narrate(const FlashEvent& event, bool avrTarget) {
  using namespace FlashEvents;
  NarratedStep step;
  if (auto* e = std::get_if<Connecting>(&event)) {
    if (e->manual) {
      step.stage = L10n::Stage::holdBoot();
    } else {
      step.stage =
          e->attempt == 1 ? L10n::Stage::connecting() : L10n::Stage::connectingAttempt(e->attempt);
    }
    // In manual mode the instruction is repeated every five attempts, as a reminder.
    if (e->attempt == 1 || (e->manual && e->attempt % 5 == 1)) {
      step.line = line(Kind::meta, e->manual ? L10n::Log::holdBoot() : L10n::Log::connecting());
    }
  } else if (auto* e = std::get_if<Connected>(&event)) {
    step.line = line(Kind::response,
                     e->mac ? L10n::Log::chipAndMAC(e->chip, *e->mac) : L10n::Log::chip(e->chip));
    if (e->chip == displayName(ESPChip::esp8266)) {
      step.note = line(Kind::meta, L10n::Log::esp8266Limits());
    }
  } else if (auto* e = std::get_if<BaudRate>(&event)) {
    step.line = line(Kind::meta, L10n::Log::speed(e->rate));
  } else if (auto* e = std::get_if<PortChanged>(&event)) {
    step.line = line(Kind::meta, L10n::Log::bootloaderOn(deviceName(e->path)));
  } else if (auto* e = std::get_if<Writing>(&event)) {
    step.stage = visible(L10n::Stage::writing(e->name));
    std::string size = formatByteCount(e->size);
    step.line =
        line(Kind::request,
             "→ " + (avrTarget ? e->name + " (" + size + ")"
                               : L10n::Log::writeTo(e->name, formatAddress(e->offset), size)));
  } else if (auto* e = std::get_if<Written>(&event)) {
    step.line =
        line(Kind::response, "← " + L10n::Log::writtenIn(e->name, formatSeconds(e->seconds)));
  } else if (auto* e = std::get_if<Verifying>(&event)) {
    step.stage = visible(L10n::Stage::verifying(e->name));
  } else if (auto* e = std::get_if<Verified>(&event)) {
    step.line = line(Kind::response, "✓ " + L10n::Log::verified(e->name));
  } else if (std::holds_alternative<Resetting>(event)) {
    step.stage = L10n::Stage::restarting();
  } else if (std::holds_alternative<LinesUnconfirmed>(event)) {
    step.line = line(Kind::meta, L10n::Log::linesUnconfirmed());
  }
  return step;
}

NarratedStep succeeded(const FlashSummary& summary) {
  return {L10n::Stage::done(),
          line(Kind::system, "--- " + L10n::Log::doneIn(formatSeconds(summary.seconds)) + " ---")};
}

NarratedStep failed(const std::string& message, bool cancelled, bool boardAnswered) {
  if (cancelled) {
    return {
        L10n::Stage::stopped(), line(Kind::warning, "✕ " + L10n::Log::stopped()),
        line(Kind::warning, boardAnswered ? L10n::Log::partlyWritten() : L10n::Log::notWritten())};
  }
  return {L10n::Stage::failed(), line(Kind::error, "✕ " + message)};
}

} // namespace tarnwick::RunNarration

namespace tarnwick {

NarratedStep RunNarrator::narrate(const FlashEvent& event) {
  NarratedStep step = RunNarration::narrate(event, avrTarget_);
  if (std::holds_alternative<FlashEvents::Connected>(event)) answered_ = true;
  if (auto* progress = std::get_if<FlashEvents::Progress>(&event); progress && progress->done > 0)
    answered_ = true;
  if (!avrTarget_) return step;
  if (auto* writing = std::get_if<FlashEvents::Writing>(&event)) {
    writeToShow_ = writing->name;
  } else if (std::holds_alternative<FlashEvents::Progress>(event) && writeToShow_) {
    step.stage = visible(L10n::Stage::writing(*writeToShow_));
    writeToShow_.reset();
  }
  return step;
}

} // namespace tarnwick
