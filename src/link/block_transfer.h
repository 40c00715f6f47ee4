#pragma once
// The station's EEPROM moved in blocks of 8 bytes between the station and the
// image, with growing waits between retries for a slow EEPROM, read-back
// checks, and a three-pass write that never leaves a valid header over
// half-written data.
//
// The order of the header blocks within a write. The header test looks at
// the layout mark (block 40) and the check byte over bytes 0 to 47. Zeroing
// the header in address order and restoring it in address order would make
// the mark and the check byte valid again halfway through the last pass,
// while the blocks at 128 to 264 still hold zeros. So the block that holds
// the mark goes first when the header is zeroed and last when it is
// restored: from the first block written to the last, a station whose write
// stops reads as not programmed, and the mark comes back only with the block
// that completes the write.
//
// Replies carry no address. A late reply is taken when only copies of its
// request have gone out since (see in_step_line.h), and no other request goes
// out while a reply may still come; so a late or stalled line costs its
// lateness and nothing more. Only once a reply was given up (it never came
// within its reply time and a quiet line) could a later reply be another
// request's: the blocks read from then on are read once more, last first,
// and taken only where both reads agree (a third read settles a
// disagreement).

#include <cstddef>
#include <cstdint>
#include <vector>

#include "link/in_step_line.h"
#include "link/line_io.h"
#include "settings/eeprom_image.h"
#include "settings/image_layout.h"

namespace rm8::link {

// The data blocks are the heap's.
inline constexpr std::uint16_t kFirstDataBlock = layout::kHeapStart;

class BlockTransfer {
public:
    BlockTransfer(LineIo& io, EepromImage& image)
        : io_(io)
        , line_(io)
        , image_(image)
    {
    }

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

    // The header blocks in address order; bytes 64 to 127 are never written.
    static std::vector<std::uint16_t> headerBlocks();
    // The order in which the header is zeroed (the mark's block first) and
    // restored (the mark's block last).
    static std::vector<std::uint16_t> zeroingOrder();
    static std::vector<std::uint16_t> restoringOrder();

private:
    // Tries one block up to its limit of attempts. Suspect tells whether
    // the reply taken may have been another request's.
    bool readWithRetries(std::uint16_t address, bool& suspect);
    bool confirmFrom(std::size_t first, std::size_t eepromSize, std::size_t blocks);
    bool writeWithRetries(std::uint16_t address, bool checkWrite);

    LineIo& io_;
    InStepLine line_;
    EepromImage& image_;
    unsigned retryWaitMs_ = 0;
};

} // namespace rm8::link
