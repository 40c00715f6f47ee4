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

std::vector<std::uint8_t> addressed(std::uint8_t request, std::uint16_t address)
{
    std::vector<std::uint8_t> frame{request};
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

bool BlockTransfer::readBlock(std::uint16_t address)
{
    const auto reply = io_.exchange(addressed(kReadBlock, address), protocol::replyCode(kReadBlock),
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
    return io_.exchange(request, protocol::replyCode(kWriteBlock), std::chrono::milliseconds(retryWaitMs_ + kReplyMarginMs)).has_value();
}

bool BlockTransfer::verifyBlock(std::uint16_t address)
{
    std::array<std::uint8_t, kBlockBytes> expected{};
    for (std::size_t k = 0; k < kBlockBytes; ++k)
        expected[k] = image_.byte(address + k);
    retryWaitMs_ = 0;
    for (int attempt = 0; attempt < kVerifyAttempts; ++attempt) {
        retryWaitMs_ += kRetryStepMs;
        if (!readBlock(address))
            continue;
        bool same = true;
        for (std::size_t k = 0; k < kBlockBytes; ++k)
            same = same && image_.byte(address + k) == expected[k];
        if (same)
            return true;
    }
    return false;
}

bool BlockTransfer::readAllBlocks(std::size_t eepromSize)
{
    Interaction& ui = io_.ui();
    io_.flushInput();
    ui.showProgress(messages::kReadingEeprom, true);
    const std::size_t blocks = (eepromSize + kBlockBytes - 1) / kBlockBytes;
    std::size_t address = 0;
    do {
        ui.progressBlocks(address / kBlockBytes, blocks);
        retryWaitMs_ = 0;
        int failures = 0;
        while (!readBlock(static_cast<std::uint16_t>(address))) {
            if (retryWaitMs_ + kRetryStepMs >= kLongestReadWaitMs || failures > kReadFailuresAllowed) {
                ui.hideProgress();
                return false;
            }
            ++failures;
            retryWaitMs_ += kRetryStepMs;
        }
        address += kBlockBytes;
    } while (address < eepromSize && !ui.cancelRequested());
    ui.progressBlocks(std::min(address / kBlockBytes, blocks), blocks);
    ui.hideProgress();
    return true;
}

bool BlockTransfer::writeWithRetries(std::uint16_t address, bool checkWrite)
{
    retryWaitMs_ = 0;
    bool written = false;
    for (int attempt = 0; attempt < kWriteAttempts && !written; ++attempt) {
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
    io_.flushInput();
    ui.showProgress(messages::kWritingEeprom, true);
    const auto fail = [&] {
        ui.hideProgress();
        return false;
    };

    const auto headers = headerBlocks();
    const std::size_t dataBlocks =
        usedSize <= kFirstDataBlock ? 1 : (usedSize - kFirstDataBlock + kBlockBytes - 1) / kBlockBytes + 1;
    const std::size_t total = 2 * headers.size() + dataBlocks;
    std::size_t done = 0;
    const auto writeOne = [&](std::uint16_t address) {
        ui.progressBlocks(done++, total);
        return writeWithRetries(address, checkWrite);
    };

    // Pass 1: the header goes first, so that a write cut short leaves the
    // station reading as not programmed rather than half programmed.
    std::vector<std::array<std::uint8_t, kBlockBytes>> saved(headers.size());
    for (std::size_t h = 0; h < headers.size(); ++h) {
        for (std::size_t k = 0; k < kBlockBytes; ++k) {
            saved[h][k] = image_.byte(headers[h] + k);
            image_.putByte(headers[h] + k, 0);
        }
        if (!writeOne(headers[h]))
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

    // Pass 3: the header with its real bytes.
    for (std::size_t h = 0; h < headers.size(); ++h) {
        for (std::size_t k = 0; k < kBlockBytes; ++k)
            image_.putByte(headers[h] + k, saved[h][k]);
        if (!writeOne(headers[h]))
            return fail();
    }
    ui.progressBlocks(total, total);
    ui.hideProgress();
    return true;
}

} // namespace rm8::link
