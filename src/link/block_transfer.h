#pragma once
// The station's EEPROM moved in blocks of 8 bytes between the station and the
// image, with growing waits between retries for a slow EEPROM, read-back
// checks, and a three-pass write that never leaves a valid header over
// half-written data.

#include <cstddef>
#include <cstdint>

#include "link/line_io.h"
#include "settings/eeprom_image.h"
#include "settings/image_layout.h"

namespace rm8::link {

// The data blocks are the heap's.
inline constexpr std::uint16_t kFirstDataBlock = layout::kHeapStart;

class BlockTransfer {
public:
    BlockTransfer(LineIo& io, EepromImage& image) : io_(io), image_(image) {}

    // One exchange each; a read stores the block into the image on success.
    bool readBlock(std::uint16_t address);
    bool writeBlock(std::uint16_t address);
    // Reads the block back, up to 9 times, until it equals what the image held.
    bool verifyBlock(std::uint16_t address);

    // The whole EEPROM (eepromSize bytes) into the image. True also after
    // Storno: the caller looks at the cancel flag.
    bool readAllBlocks(std::size_t eepromSize);
    // Header blocks zeroed, data blocks from 272 up to the used size, header
    // blocks written last. False on a failed block or after Storno.
    bool writeAllBlocks(std::size_t usedSize, bool checkWrite);

    // The header blocks in the order they are written; bytes 64 to 127 are
    // never written.
    static std::vector<std::uint16_t> headerBlocks();

private:
    bool writeWithRetries(std::uint16_t address, bool checkWrite);

    LineIo& io_;
    EepromImage& image_;
    unsigned retryWaitMs_ = 0;
};

} // namespace rm8::link
