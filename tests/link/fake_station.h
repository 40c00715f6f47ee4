#pragma once
// A station in programming mode, simulated in process behind the serial-line
// interface. It checks every request frame on its own (it does not borrow the
// link's framing code, so a framing fault in the link cannot hide itself) and
// keeps a log of what it was asked, so tests can compare the traffic with the
// protocol as documented.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "flow/interaction.h"
#include "link/serial_line.h"

namespace rm8::test {

using Bytes = std::vector<std::uint8_t>;

// The frame checksum as documented: (sum + 1) mod 256, 13 sent as 12.
inline std::uint8_t wireChecksum(const Bytes& data)
{
    unsigned sum = 1;
    for (const auto b : data)
        sum += b;
    const auto c = static_cast<std::uint8_t>(sum % 256);
    return c == 13 ? std::uint8_t{12} : c;
}

inline void appendHex(Bytes& out, std::uint8_t value)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    out.push_back(static_cast<std::uint8_t>(kDigits[value / 16]));
    out.push_back(static_cast<std::uint8_t>(kDigits[value % 16]));
}

inline int hexDigit(std::uint8_t c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

// Records everything the technician would see and answers questions from a
// script. Storno is a flag that stays set until the next progress window,
// because showing the progress is what clears it.
class RecordingInteraction : public Interaction {
public:
    struct Shown {
        MessageIcon icon;
        std::string text;
    };
    std::vector<std::pair<std::size_t, std::size_t>> blocks; // progress: done, total

    void showProgress(std::string_view text, bool) override
    {
        progress.emplace_back(text);
        events.push_back("progress:" + std::string(text));
        cancel = false;
    }
    void hideProgress() override { events.push_back("hide"); }
    void progressBlocks(std::size_t done, std::size_t total) override { blocks.emplace_back(done, total); }
    bool cancelRequested() override
    {
        ++cancelPolls;
        return cancel;
    }
    void message(MessageIcon icon, std::string_view text, std::string_view) override
    {
        messages.push_back({icon, std::string(text)});
        events.push_back("message:" + std::string(text));
    }
    Answer ask(MessageIcon icon, std::string_view question, Buttons) override
    {
        questions.push_back({icon, std::string(question)});
        events.push_back("ask:" + std::string(question));
        EXPECT_FALSE(answers.empty()) << "unscripted question: " << question;
        if (answers.empty())
            return Answer::Cancel;
        const Answer a = answers.front();
        answers.pop_front();
        return a;
    }

    std::vector<std::string> progress;
    std::vector<Shown> messages;
    std::vector<Shown> questions;
    std::vector<std::string> events;
    std::deque<Answer> answers;
    bool cancel = false;
    int cancelPolls = 0;
};

struct StationOptions {
    std::uint8_t typeByte = 0x20; // RM8
    std::uint8_t versionMajor = 1;
    std::uint8_t versionMinor = 0;
    std::uint8_t sizeCode = 6;  // 8128 bytes of settings area
    std::uint8_t modemCode = 4; // TC35
    // Left empty: all 0xFF, sized 2^(code+7) - 64.
    std::optional<Bytes> eeprom;
    int silentAttentions = 0;
    bool dead = false;
    // 1-based request numbers whose reply carries a wrong checksum, or none.
    std::set<std::size_t> badChecksumAt;
    std::set<std::size_t> silentAt;
    // Write-block address -> number of first attempts left unanswered.
    std::map<std::uint16_t, int> failFirstWrites;
    // Answers a write with 133 but keeps bytes other than those sent.
    bool corruptStores = false;
    // Stops answering anything once this many requests were answered.
    std::optional<std::size_t> deadAfter;
    std::optional<std::string> openError;
};

class FakeStation : public link::SerialLine {
public:
    explicit FakeStation(StationOptions options = {}) : opt_(std::move(options))
    {
        const std::size_t size = (std::size_t{1} << (opt_.sizeCode + 7)) - 64;
        eeprom = opt_.eeprom ? *opt_.eeprom : Bytes(size, 0xFF);
        failWritesLeft_ = opt_.failFirstWrites;
    }

    Expected<void, std::string> open() override
    {
        ++opens;
        if (opt_.openError)
            return unexpected(*opt_.openError);
        open_ = true;
        return {};
    }
    void close() override
    {
        if (open_)
            ++closes;
        open_ = false;
    }
    bool isOpen() const override { return open_; }

    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        if (!open_)
            return unexpected(std::string("port closed"));
        for (const auto b : bytes) {
            wire.push_back(b);
            incoming_.push_back(b);
            if (b == 13) {
                handleFrame(incoming_);
                incoming_.clear();
            }
        }
        return {};
    }

    Expected<std::vector<std::uint8_t>, std::string> read(link::Clock::time_point deadline) override
    {
        if (!open_)
            return unexpected(std::string("port closed"));
        if (pending_.empty()) {
            // Silence costs real time: the link measures its waits with the
            // steady clock, so tests keep unanswered requests few.
            std::this_thread::sleep_until(deadline);
            return Bytes{};
        }
        Bytes out(pending_.begin(), pending_.end());
        pending_.clear();
        return out;
    }

    void flushInput() override
    {
        ++flushes;
        pending_.clear();
    }

    // Bytes that arrive unasked, for example the tail of an earlier reply.
    void injectInput(const Bytes& bytes) { pending_.insert(pending_.end(), bytes.begin(), bytes.end()); }

    // Requests carrying this code, in order.
    std::vector<Bytes> requestsWithCode(std::uint8_t code) const
    {
        std::vector<Bytes> out;
        for (const auto& r : requests)
            if (!r.empty() && r.front() == code)
                out.push_back(r);
        return out;
    }

    // The addresses of read (4) or write (5) requests, in order.
    std::vector<std::uint16_t> blockAddresses(std::uint8_t code) const
    {
        std::vector<std::uint16_t> out;
        for (const auto& r : requestsWithCode(code))
            out.push_back(addressOf(r));
        return out;
    }

    static std::uint16_t addressOf(const Bytes& r)
    {
        const int lo = hexDigit(r[1]) * 16 + hexDigit(r[2]);
        const int hi = hexDigit(r[3]) * 16 + hexDigit(r[4]);
        return static_cast<std::uint16_t>(hi * 256 + lo);
    }

    // Called with the 1-based number of each well-formed request.
    std::function<void(std::size_t)> onRequest;

    Bytes eeprom;
    std::vector<Bytes> requests; // data bytes, checksum and terminator removed
    Bytes wire;                  // every byte written, as written
    int badFrames = 0;
    int opens = 0;
    int closes = 0;
    int flushes = 0;

private:
    void handleFrame(const Bytes& frame)
    {
        if (frame.size() < 2) {
            ++badFrames;
            return;
        }
        Bytes data(frame.begin(), frame.end() - 2);
        if (wireChecksum(data) != frame[frame.size() - 2]) {
            ++badFrames;
            ADD_FAILURE() << "request frame with a wrong checksum";
            return;
        }
        requests.push_back(data);
        const std::size_t number = requests.size();
        if (onRequest)
            onRequest(number);
        auto reply = answer(data);
        if (!reply || opt_.dead || opt_.silentAt.count(number) != 0)
            return;
        if (opt_.deadAfter && answered_ >= *opt_.deadAfter)
            return;
        ++answered_;
        const auto sum = wireChecksum(*reply);
        const auto check = opt_.badChecksumAt.count(number) != 0 ? static_cast<std::uint8_t>(sum == 40 ? 41 : 40) : sum;
        pending_.insert(pending_.end(), reply->begin(), reply->end());
        pending_.push_back(check);
        pending_.push_back(13);
    }

    std::uint8_t stored(std::size_t address) const { return address < eeprom.size() ? eeprom[address] : 0xFF; }

    std::optional<Bytes> answer(const Bytes& r)
    {
        switch (r.empty() ? 0 : r.front()) {
        case 1:
            if (attentions_++ < opt_.silentAttentions)
                return std::nullopt;
            return Bytes{129};
        case 2: {
            Bytes out{130};
            appendHex(out, 0x82);
            appendHex(out, 0xD3);
            appendHex(out, opt_.typeByte);
            appendHex(out, opt_.versionMajor);
            appendHex(out, opt_.versionMinor);
            return out;
        }
        case 3: {
            Bytes out{131};
            appendHex(out, opt_.sizeCode);
            appendHex(out, opt_.modemCode);
            return out;
        }
        case 4: {
            if (r.size() != 5)
                return std::nullopt;
            const std::uint16_t a = addressOf(r);
            Bytes out{132};
            for (std::size_t k = 0; k < 8; ++k)
                appendHex(out, stored(a + k));
            return out;
        }
        case 5: {
            if (r.size() != 21)
                return std::nullopt;
            const std::uint16_t a = addressOf(r);
            if (auto it = failWritesLeft_.find(a); it != failWritesLeft_.end() && it->second > 0) {
                --it->second;
                return std::nullopt;
            }
            for (std::size_t k = 0; k < 8; ++k) {
                auto value = static_cast<std::uint8_t>(hexDigit(r[5 + 2 * k]) * 16 + hexDigit(r[6 + 2 * k]));
                if (opt_.corruptStores)
                    value = static_cast<std::uint8_t>(value ^ 0x5A);
                if (a + k < eeprom.size())
                    eeprom[a + k] = value;
            }
            return Bytes{133};
        }
        case 6:
            if (r == Bytes{6, 170, 85})
                return Bytes{134};
            return std::nullopt;
        default:
            return std::nullopt;
        }
    }

    StationOptions opt_;
    std::map<std::uint16_t, int> failWritesLeft_;
    Bytes incoming_;
    std::deque<std::uint8_t> pending_;
    bool open_ = false;
    int attentions_ = 0;
    std::size_t answered_ = 0;
};

} // namespace rm8::test
