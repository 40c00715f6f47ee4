#include "link/block_transfer.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "flow/messages.h"
#include "link/frame.h"
#include "link/protocol_codes.h"
#include "settings/image_layout.h"

namespace rm8::link {
namespace {

using protocol::kBlockBytes;
using protocol::kReadBlock;
using protocol::kWriteBlock;
constexpr unsigned kRetryStepMs = 100;
constexpr unsigned kReplyMarginMs = 100;
constexpr unsigned kLongestReadWaitMs = 30000;
constexpr int kReadFailuresAllowed = 10;
constexpr int kWriteAttempts = 10;
constexpr int kVerifyAttempts = 9;

using Block = std::array<std::uint8_t, kBlockBytes>;

Block blockOf(const EepromImage& image, std::size_t address)
{
    Block block {};
    for (std::size_t k = 0; k < kBlockBytes; ++k)
        block[k] = image.byte(address + k);
    return block;
}

std::vector<std::uint8_t> addressed(std::uint8_t request, std::uint16_t address)
{
    std::vector<std::uint8_t> frame { request };
    appendHexByte(frame, static_cast<std::uint8_t>(address % 256));
    appendHexByte(frame, static_cast<std::uint8_t>(address / 256));
    return frame;
}

} // namespace

std::vector<std::uint16_t> BlockTransfer::headerBlocks()
{
    // Everything below the heap but the station's own bytes.
    std::vector<std::uint16_t> blocks;
    for (std::uint16_t a = 0; a < layout::kHeapStart; a = static_cast<std::uint16_t>(a + kBlockBytes))
        if (a < layout::kStationBytesStart || a >= layout::kStationBytesEnd)
            blocks.push_back(a);
    return blocks;
}

namespace {

constexpr auto kMarkBlock = static_cast<std::uint16_t>(layout::kLayoutMarkAddress / kBlockBytes * kBlockBytes);

} // namespace

std::vector<std::uint16_t> BlockTransfer::zeroingOrder()
{
    auto blocks = headerBlocks();
    std::stable_partition(blocks.begin(), blocks.end(), [](std::uint16_t a) { return a == kMarkBlock; });
    return blocks;
}

std::vector<std::uint16_t> BlockTransfer::restoringOrder()
{
    auto blocks = headerBlocks();
    std::stable_partition(blocks.begin(), blocks.end(), [](std::uint16_t a) { return a != kMarkBlock; });
    return blocks;
}

bool BlockTransfer::readBlock(std::uint16_t address)
{
    const auto reply = line_.exchange(addressed(kReadBlock, address), protocol::replyCode(kReadBlock),
        std::chrono::milliseconds(retryWaitMs_ + kReplyMarginMs));
    if (!reply || reply->size() < protocol::kReadReplyLength)
        return false;
    for (std::size_t k = 0; k < kBlockBytes; ++k)
        image_.putByte(address + k, hexPairToByte((*reply)[1 + 2 * k], (*reply)[2 + 2 * k]));
    return true;
}

bool BlockTransfer::writeBlock(std::uint16_t address)
{
    auto request = addressed(kWriteBlock, address);
    for (std::size_t k = 0; k < kBlockBytes; ++k)
        appendHexByte(request, image_.byte(address + k));
    return line_
        .exchange(request, protocol::replyCode(kWriteBlock), std::chrono::milliseconds(retryWaitMs_ + kReplyMarginMs))
        .has_value();
}

bool BlockTransfer::verifyBlock(std::uint16_t address)
{
    const Block expected = blockOf(image_, address);
    retryWaitMs_ = 0;
    for (int attempt = 0; attempt < kVerifyAttempts; ++attempt) {
        retryWaitMs_ += kRetryStepMs;
        if (readBlock(address) && blockOf(image_, address) == expected)
            return true;
    }
    return false;
}

bool BlockTransfer::readWithRetries(std::uint16_t address, bool& suspect)
{
    retryWaitMs_ = 0;
    int failures = 0;
    while (!readBlock(address)) {
        if (retryWaitMs_ + kRetryStepMs >= kLongestReadWaitMs || failures > kReadFailuresAllowed)
            return false;
        ++failures;
        retryWaitMs_ += kRetryStepMs;
    }
    suspect = !line_.inStep();
    return true;
}

bool BlockTransfer::readAllBlocks(std::size_t eepromSize)
{
    Interaction& ui = io_.ui();
    line_.start();
    ui.showProgress(messages::kReadingEeprom, true);
    const std::size_t blocks = (eepromSize + kBlockBytes - 1) / kBlockBytes;
    std::size_t address = 0;
    std::size_t firstSuspect = eepromSize;
    bool cancelled = false;
    do {
        ui.progressBlocks(address / kBlockBytes, blocks);
        bool suspect = false;
        if (!readWithRetries(static_cast<std::uint16_t>(address), suspect)) {
            ui.hideProgress();
            return false;
        }
        if (suspect)
            firstSuspect = std::min(firstSuspect, address);
        address += kBlockBytes;
        cancelled = ui.cancelRequested();
    } while (address < eepromSize && !cancelled);
    // No reply still owed is left to be taken for whatever comes next.
    line_.drain();
    if (firstSuspect < eepromSize && !cancelled) {
        const bool confirmed = confirmFrom(firstSuspect, eepromSize, blocks);
        ui.hideProgress();
        return confirmed;
    }
    ui.progressBlocks(std::min(address / kBlockBytes, blocks), blocks);
    ui.hideProgress();
    return true;
}

bool BlockTransfer::confirmFrom(std::size_t first, std::size_t eepromSize, std::size_t blocks)
{
    Interaction& ui = io_.ui();
    const std::size_t again = (eepromSize - first + kBlockBytes - 1) / kBlockBytes;
    const EepromImage firstRead = image_;
    // Last block first: a reply out of step then carries the block above
    // instead of the one below, and cannot agree with an out-of-step reply
    // of the first read.
    for (std::size_t i = 0; i < again; ++i) {
        const std::size_t address = first + (again - 1 - i) * kBlockBytes;
        ui.progressBlocks(blocks + i, blocks + again);
        const auto block = static_cast<std::uint16_t>(address);
        bool suspect = false;
        if (!readWithRetries(block, suspect))
            return false;
        const Block second = blockOf(image_, address);
        if (second != blockOf(firstRead, address)) {
            // One of the two went out of step; a third read, with no reply
            // owed any more, decides between them.
            line_.drain();
            if (!readWithRetries(block, suspect))
                return false;
            const Block third = blockOf(image_, address);
            if (third != second && third != blockOf(firstRead, address))
                return false;
        }
        if (ui.cancelRequested())
            return true;
    }
    ui.progressBlocks(blocks + again, blocks + again);
    return true;
}

bool BlockTransfer::writeWithRetries(std::uint16_t address, bool checkWrite)
{
    retryWaitMs_ = 0;
    bool written = false;
    int attempts = 0;
    while (attempts < kWriteAttempts && !written) {
        ++attempts;
        retryWaitMs_ += kRetryStepMs;
        written = writeBlock(address);
    }
    if (!written)
        return false;
    const bool cancelled = io_.ui().cancelRequested();
    if (checkWrite && !cancelled && !verifyBlock(address))
        return false;
    return !cancelled;
}

bool BlockTransfer::writeAllBlocks(std::size_t usedSize, bool checkWrite)
{
    Interaction& ui = io_.ui();
    line_.start();
    ui.showProgress(messages::kWritingEeprom, true);
    const auto fail = [&] {
        ui.hideProgress();
        return false;
    };

    const auto zeroing = zeroingOrder();
    const std::size_t dataBlocks
        = usedSize <= kFirstDataBlock ? 1 : (usedSize - kFirstDataBlock + kBlockBytes - 1) / kBlockBytes + 1;
    const std::size_t total = 2 * zeroing.size() + dataBlocks;
    std::size_t done = 0;
    const auto writeOne = [&](std::uint16_t address) {
        ui.progressBlocks(done++, total);
        return writeWithRetries(address, checkWrite);
    };

    // Pass 1: the header goes first, so that a write cut short leaves the
    // station reading as not programmed rather than half programmed.
    const EepromImage given = image_;
    for (const auto address : zeroing) {
        for (std::size_t k = 0; k < kBlockBytes; ++k)
            image_.putByte(address + k, 0);
        if (!writeOne(address))
            return fail();
    }

    // Pass 2: the data, up to and including the block at or past the used size.
    std::size_t address = kFirstDataBlock;
    std::size_t previous = 0;
    do {
        if (!writeOne(static_cast<std::uint16_t>(address)))
            return fail();
        previous = address;
        address += kBlockBytes;
    } while (previous < usedSize && !ui.cancelRequested());

    // Pass 3: the header with its real bytes, the mark last.
    for (const auto restored : restoringOrder()) {
        for (std::size_t k = 0; k < kBlockBytes; ++k)
            image_.putByte(restored + k, given.byte(restored + k));
        if (!writeOne(restored))
            return fail();
    }
    line_.drain();
    ui.progressBlocks(total, total);
    ui.hideProgress();
    return true;
}

} // namespace rm8::link
