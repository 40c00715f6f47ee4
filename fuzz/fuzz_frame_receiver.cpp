// libFuzzer target: arbitrary byte streams, cut into arbitrary chunks, into
// the reply assembler directly and through LineIo's receive loop on a line
// that hands out the chunks. Invariants: at most 101 characters are kept
// (so a reply has at most 99 data bytes), a reply is returned exactly when
// the kept characters end in a terminator and carry a valid checksum, and
// what is returned is those characters without checksum and terminator. The
// checksum is recomputed here, not borrowed from the code under test.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <thread>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "flow/interaction.h"
#include "link/frame.h"
#include "link/line_io.h"
#include "link/serial_line.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr std::size_t kKept = 101;

[[noreturn]] void violated(const char* what)
{
    std::fprintf(stderr, "invariant violated: %s\n", what);
    std::abort();
}

std::uint8_t checksum(const std::uint8_t* data, std::size_t n)
{
    unsigned sum = 1;
    for (std::size_t i = 0; i < n; ++i)
        sum += data[i];
    const auto c = static_cast<std::uint8_t>(sum % 256);
    return c == 13 ? std::uint8_t{12} : c;
}

// What a receiver must make of the characters kept so far: nothing while
// they do not end in a terminator, else the data or "invalid".
struct Model {
    Bytes kept;

    void add(const Bytes& chunk)
    {
        for (const auto b : chunk)
            if (kept.size() < kKept)
                kept.push_back(b);
    }
    bool complete() const { return !kept.empty() && kept.back() == 13; }
    std::optional<Bytes> reply() const
    {
        if (!complete() || kept.size() < 2)
            return std::nullopt;
        const std::size_t n = kept.size() - 2;
        if (checksum(kept.data(), n) != kept[n])
            return std::nullopt;
        return Bytes(kept.begin(), kept.begin() + static_cast<long>(n));
    }
};

void checkReply(const std::optional<Bytes>& got, const std::optional<Bytes>& expected)
{
    if (got.has_value() != expected.has_value())
        violated("a reply is returned exactly when the kept frame is valid");
    if (!got)
        return;
    if (*got != *expected)
        violated("the reply is the kept characters without checksum and terminator");
    if (got->size() > kKept - 2)
        violated("more than 101 characters kept");
}

class NoOne : public rm8::Interaction {
public:
    void showProgress(std::string_view, bool) override {}
    void hideProgress() override {}
    bool cancelRequested() override { return false; }
    void message(rm8::MessageIcon, std::string_view, std::string_view) override {}
    rm8::Answer ask(rm8::MessageIcon, std::string_view, rm8::Buttons) override { return rm8::Answer::No; }
};

// Hands out the chunks, one per read; then silence until the deadline.
class ChunkLine : public rm8::link::SerialLine {
public:
    explicit ChunkLine(const std::vector<Bytes>& chunks) : chunks_(chunks) {}
    rm8::Expected<void, std::string> open() override { return {}; }
    void close() override {}
    bool isOpen() const override { return true; }
    rm8::Expected<void, std::string> write(std::span<const std::uint8_t>) override { return {}; }
    rm8::Expected<Bytes, std::string> read(rm8::link::Clock::time_point deadline) override
    {
        if (next_ < chunks_.size())
            return chunks_[next_++];
        std::this_thread::sleep_until(deadline);
        return Bytes{};
    }
    void flushInput() override {}
    std::size_t consumed() const { return next_; }

private:
    const std::vector<Bytes>& chunks_;
    std::size_t next_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    // One input in eight goes through the receive loop, whose waits for an
    // incomplete stream cost real time; the rest exercise the assembler fast.
    const bool throughLineIo = input.ConsumeIntegral<std::uint8_t>() < 32;
    std::vector<Bytes> chunks;
    while (input.remaining_bytes() > 0) {
        const auto length = input.ConsumeIntegralInRange<std::size_t>(1, 48);
        chunks.push_back(input.ConsumeBytes<std::uint8_t>(length));
    }

    if (!throughLineIo) {
        // The assembler on its own: checked after every chunk, as the
        // receive loop looks at it.
        rm8::link::FrameAssembler assembler;
        Model model;
        for (const auto& chunk : chunks) {
            assembler.add(chunk);
            model.add(chunk);
            if (assembler.complete() != model.complete())
                violated("complete exactly when the kept characters end in a terminator");
            checkReply(assembler.reply(), model.reply());
        }
        assembler.clear();
        if (assembler.complete() || assembler.reply())
            violated("a cleared assembler holds nothing");
        return 0;
    }

    // The receive loop stops at the first chunk that completes a frame.
    Model model;
    std::optional<std::size_t> completedAt;
    for (std::size_t i = 0; i < chunks.size() && !completedAt; ++i) {
        model.add(chunks[i]);
        if (model.complete())
            completedAt = i + 1;
    }
    ChunkLine line(chunks);
    NoOne ui;
    rm8::link::LineIo io(line, ui);
    // A short timeout keeps incomplete streams cheap; a slow machine may cut
    // a stream short, which can only lose a reply, never invent one.
    const auto got = io.receive(std::chrono::milliseconds(1));
    if (got) {
        if (!completedAt || line.consumed() != *completedAt)
            violated("a reply only once a chunk completes the frame, and no chunk read after it");
        checkReply(got, model.reply());
    }
    return 0;
}
