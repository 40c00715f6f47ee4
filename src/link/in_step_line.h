#pragma once
// The block exchanges of a transfer, kept in step with the station's replies.
//
// A block reply carries no address: which request it answers can only be
// counted. The station answers its requests in order, one reply each or
// none, so every frame that arrives answers the oldest request still
// unanswered. A retry repeats its request unchanged, and a reply to any copy
// of it answers the copy just sent as well: a reply that comes after its
// deadline, while only copies of its request have been sent since, is taken
// instead of being thrown away and asked for again.
//
// A request that differs from the ones still unanswered is held back until
// their replies have come, or until the last copy's reply time has passed
// and the line has been quiet for a while. Only then can a reply still on
// its way be taken for the answer to another request; from then on the
// transfer is no longer in step, and the caller confirms what it read.

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "link/line_io.h"

namespace rm8::link {

class InStepLine {
public:
    // How long a line that has had its reply time must stay quiet before an
    // unanswered request is given up.
    static constexpr std::chrono::milliseconds kQuiet { 100 };

    explicit InStepLine(LineIo& io)
        : io_(io)
    {
    }

    // A transfer starts on an empty line, in step.
    void start();

    // Sends the request and waits up to the timeout for a good reply with
    // the reply code, to it or to an earlier copy of it. A bad reply to the
    // last copy ends the wait at once.
    std::optional<std::vector<std::uint8_t>> exchange(
        std::span<const std::uint8_t> request, std::uint8_t replyCode, std::chrono::milliseconds timeout);

    // Waits for the replies still owed, as before a different request.
    void drain();

    // False once a reply was given up: a reply taken since may have been
    // another request's.
    bool inStep() const { return inStep_; }
    // Requests sent and not yet answered by any frame.
    std::size_t unanswered() const { return unanswered_; }

private:
    struct Heard {
        std::optional<std::vector<std::uint8_t>> reply; // a good one, to the request sent last or a copy
        bool lastAnswered = false; // no copy is owed a reply any more
    };

    // Keeps received bytes until they make frames; past the longest frame
    // the rest is dropped and the frame ends up as one bad reply.
    void keep(std::span<const std::uint8_t> bytes);
    std::optional<std::vector<std::uint8_t>> nextFrame();
    // Counts the frames received against the requests, up to a good reply.
    Heard hear(std::uint8_t replyCode);

    LineIo& io_;
    std::vector<std::uint8_t> pending_; // the request whose copies are unanswered
    std::size_t unanswered_ = 0;
    Clock::time_point lastDeadline_ {};
    std::vector<std::uint8_t> inbox_; // received, not yet counted
    std::size_t frameLength_ = 0; // of the frame arriving, in the inbox
    bool inStep_ = true;
};

} // namespace rm8::link
