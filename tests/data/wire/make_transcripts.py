#!/usr/bin/env python3
"""Writes the wire transcripts of this folder from the station protocol as
the station's documentation gives it, without any of the tool's code: what
the tool sends for each command, what a station answers (with the faults the
transcript's head names), and how long the tool waits for a reply that does
not come.

A transcript's head says how to set the station up and what to run:
  size-code N      the station's memory code (the settings area is 2^(N+7) - 64)
  fault N[-M] KIND what happens to the Nth (to Mth) request the station receives:
                   drop (no reply), garble (a wrong checksum), hangup (the line
                   goes dead), store-other (the block is stored with its first
                   byte inverted, the reply is as usual)
  run COMMAND      activate | deactivate yes|no | read SIZE | write USED check|nocheck
The body is what crossed the line, in order:
  open, close      the port
  > ..             a request as written, in hexadecimal
  < ..             a reply as it arrived
  ~ MS             how long the tool waited before what follows
  hang-up          the station's line went dead
  = ..             what the command returned: the state, what the station said
                   of itself and whether the port is open; true or false (and
                   the port for a leave); the image a read filled
The station's EEPROM holds (i * 7 + 3) mod 251 at address i; the tool's image
holds (i * 3 + 4) mod 256 when a write starts and zeros when a read starts;
with these, some requests and replies carry the checksum 12 that stands for 13.

Run it after a change of the protocol and review the differences.
"""
import pathlib

HERE = pathlib.Path(__file__).parent
HEADER_BLOCKS = list(range(0, 64, 8)) + list(range(128, 272, 8))
# The block that holds the layout mark is zeroed first and restored last, so
# that a write stopped at any block leaves no valid header.
ZEROING = [40] + [a for a in HEADER_BLOCKS if a != 40]
RESTORING = [a for a in HEADER_BLOCKS if a != 40] + [40]
QUIET = 100  # an unanswered block request is given up after its reply time and this much quiet


def checksum(data):
    c = (sum(data) + 1) % 256
    return 12 if c == 13 else c


def frame(data):
    return list(data) + [checksum(data), 13]


def pairs(values):
    return [ord(c) for v in values for c in '%02X' % v]


def unpairs(chars):
    return [int(bytes(chars[i:i + 2]).decode(), 16) for i in range(0, len(chars), 2)]


def block_request(code, address, block=()):
    return [code] + pairs([address % 256, address // 256]) + pairs(block)


class Transcript:
    def __init__(self, name, about, size_code, faults):
        self.name, self.about, self.size_code, self.faults = name, about, size_code, faults
        self.memory = [(i * 7 + 3) % 251 for i in range(2 ** (size_code + 7))]
        self.head = ['size-code %d' % size_code]
        for n in sorted(faults):  # a run of requests with the same fault on one line: "fault 15-25 drop"
            if faults.get(n - 1) != faults[n]:
                last = n
                while faults.get(last + 1) == faults[n]:
                    last += 1
                self.head.append('fault %s %s' % (n if last == n else '%d-%d' % (n, last), faults[n]))
        self.body, self.waited, self.requests, self.dead, self.open = [], 0, 0, False, False
        # Block replies are counted against the requests: the request whose
        # copies are owed a reply, how many, the last one's reply time, and
        # whether a reply was given up since the transfer began.
        self.pending, self.unanswered, self.last_timeout, self.in_step = None, 0, 0, True

    def line(self, text):
        if self.waited:
            self.body.append('~ %d' % self.waited)
            self.waited = 0
        self.body.append(text)

    def answer(self, data, fault):
        code = data[0]
        if code in (4, 5):
            a = unpairs(data[1:5])
            a = a[0] + 256 * a[1]
        if code == 1:
            reply = [0x81]
        elif code == 2:  # signature 0x20D382 (RM8), low byte first, then version 1.0
            reply = [0x82] + pairs([0x82, 0xD3, 0x20, 1, 0])
        elif code == 3:  # memory code, modem 4
            reply = [0x83] + pairs([self.size_code, 4])
        elif code == 4:
            reply = [0x84] + pairs(self.memory[a:a + 8])
        elif code == 5:
            block = unpairs(data[5:21])
            if fault == 'store-other':
                block[0] ^= 0xFF
            self.memory[a:a + 8] = block
            reply = [0x85]
        else:
            reply = [0x86]
        wire = frame(reply)
        if fault == 'garble':
            wire[-2] = (wire[-2] + 1) % 256
            if wire[-2] == 13:
                wire[-2] = 14
        return None if fault == 'drop' else wire

    def exchange(self, data, timeout, counted=False):
        """One request; the reply's data when a good one came in time. A
        counted request (a block's) takes a reply to an earlier copy of it,
        waits out its reply time after a bad reply while copies are owed, and
        is held back while replies to a different request are owed."""
        if counted and self.unanswered and data != self.pending:
            self.drain()
        self.pending = data
        self.unanswered += 1
        self.last_timeout = timeout
        self.line('> ' + ' '.join('%02X' % b for b in frame(data)))
        fault = None
        if not self.dead:
            self.requests += 1
            fault = self.faults.get(self.requests)
            if fault == 'hangup':
                self.dead = True
                self.line('hang-up')
        reply = None if self.dead else self.answer(data, fault)
        if reply is None:
            self.waited += timeout
            return None
        self.line('< ' + ' '.join('%02X' % b for b in reply))
        self.unanswered -= 1
        if fault == 'garble':
            if counted and self.unanswered:
                self.waited += timeout
            return None
        return reply[:-2]

    def start(self):
        self.pending, self.unanswered, self.in_step = None, 0, True

    def drain(self):
        """Waits for the replies owed: replies come at once here, so the owed
        ones never come; they are given up after the last copy's reply time
        (a dead line at once)."""
        if self.unanswered and not self.dead:
            self.waited += max(self.last_timeout, QUIET)
        if self.unanswered:
            self.unanswered, self.in_step = 0, False

    def read_block(self, a):
        """A block read with its retries; the block and whether it may be
        another request's reply, or None."""
        for attempt in range(12):
            reply = self.exchange(block_request(4, a), 100 * (attempt + 1), True)
            if reply:
                return unpairs(reply[1:17]), not self.in_step
        return None, True

    def result(self, text):
        self.line('= ' + text)

    def activate(self):
        self.head.append('run activate')
        if self.open:
            self.line('close')
        self.line('open')
        self.open = True
        while not self.exchange([1], 500):
            pass
        ok = self.exchange([2], 100) and self.exchange([3], 100)
        if not ok:
            self.line('close')
            self.open = False
        memory = '%6d byte' % (2 ** (self.size_code + 7) - 64)
        self.result('Aktivni|RM8|1.0|%s|TC35 Siemens|open' % memory if ok else 'Neaktivni|?|?|?|?|closed')

    def deactivate(self, answer):
        self.head.append('run deactivate ' + answer)
        ok = self.exchange([6, 0xAA, 0x55], 100) is not None or answer == 'yes'
        if ok:
            self.line('close')
            self.open = False
        self.result('true|closed' if ok else 'false|open')

    def read(self, size):
        self.head.append('run read %d' % size)
        self.start()
        image, ok, first_suspect = [0] * size, True, None
        for a in range(0, size, 8):
            block, suspect = self.read_block(a)
            if block is None:
                ok = False
                break
            image[a:a + 8] = block
            if suspect and first_suspect is None:
                first_suspect = a
        if ok:
            self.drain()
        if ok and first_suspect is not None:
            # Read again from the first block that may hold another's reply,
            # last block first; a block is taken where two reads agree, a
            # third settling it.
            for a in reversed(range(first_suspect, size, 8)):
                second, _ = self.read_block(a)
                if second is not None and second != image[a:a + 8]:
                    self.drain()
                    third, _ = self.read_block(a)
                    second = third if third in (second, image[a:a + 8]) else None
                if second is None:
                    ok = False
                    break
                image[a:a + 8] = second
        self.result('true' if ok else 'false')
        self.result('image ' + ' '.join('%02X' % b for b in image))

    def write(self, used, check):
        self.head.append('run write %d %s' % (used, 'check' if check else 'nocheck'))
        image = [(i * 3 + 4) % 256 for i in range(65536)]

        def write_block(a):
            for attempt in range(10):
                if self.exchange(block_request(5, a, image[a:a + 8]), 200 + 100 * attempt, True):
                    break
            else:
                return False
            if not check:
                return True
            expected = image[a:a + 8]
            for attempt in range(9):
                reply = self.exchange(block_request(4, a), 200 + 100 * attempt, True)
                if reply:
                    image[a:a + 8] = unpairs(reply[1:17])
                    if image[a:a + 8] == expected:
                        return True
            return False

        def passes():
            self.start()
            saved = {a: image[a:a + 8] for a in HEADER_BLOCKS}
            for a in ZEROING:
                image[a:a + 8] = [0] * 8
                if not write_block(a):
                    return False
            a = 272
            while True:
                if not write_block(a):
                    return False
                a += 8
                if a - 8 >= used:
                    break
            for a in RESTORING:
                image[a:a + 8] = saved[a]
                if not write_block(a):
                    return False
            self.drain()
            return True

        self.result('true' if passes() else 'false')

    def save(self):
        text = ''.join('# %s\n' % line for line in self.about.strip().split('\n'))
        text += '\n'.join(self.head) + '\n\n' + '\n'.join(self.body) + '\n'
        (HERE / (self.name + '.txt')).write_text(text)


def session():
    t = Transcript('session', """
Activation and leave. The attention request is awaited 500 ms and repeated
until answered; identify, configuration and leave are awaited 100 ms and
not repeated. A failed activation closes the port; activating an open port
closes it first; an unanswered leave asks whether to give up the session.""",
                   6, {1: 'drop', 3: 'drop', 6: 'drop', 13: 'drop', 14: 'drop'})
    for _ in range(4):
        t.activate()
    t.deactivate('no')
    t.deactivate('yes')
    t.activate()
    t.deactivate('yes')
    t.save()


def read():
    t = Transcript('read', """
Reading a 64-byte EEPROM: eight blocks in order into the image. A block whose
reply is lost or garbled is asked again, each time waiting 100 ms longer, up
to 12 times (100 to 1,200 ms); the 12th may still succeed. A garbled reply is
a reply: the retry after it is in step. A reply to a lost one's retry may be
the lost one's, late: the retry's own reply is awaited for its reply time
before the next block; once it is given up, the blocks from the next one on
are read again, last first, and must agree.""",
                   0, {6: 'drop', 10: 'garble', **{n: 'drop' for n in range(15, 26)},
                       **{n: 'drop' for n in range(33, 45)}})
    t.activate()
    for _ in range(3):
        t.read(64)
    t.save()


def write():
    t = Transcript('write', """
Writing without read-back: the 26 header blocks zeroed, the one with the
layout mark (40) first (bytes 64 to 127 are never written), the data blocks
from 272 up to the one at or past the used size, the header blocks with their
bytes, the one with the mark last. A block is tried up to 10 times, waiting
200 to 1,100 ms; the 10th may still succeed. Before the next block, the
replies owed to the lost attempts are awaited for the last attempt's reply
time.""",
                   2, {5: 'drop', 6: 'drop', **{n: 'drop' for n in range(63, 72)},
                       **{n: 'drop' for n in range(125, 135)}})
    t.activate()
    t.write(300, False)
    t.write(272, False)
    t.write(272, False)
    t.save()


def data_pass():
    t = Transcript('data_pass', """
Where the data pass ends: it always writes the block at 272, and goes on up
to and including the block that starts at or past the used size.""", 2, {})
    t.activate()
    for used in (0, 273, 304, 305):
        t.write(used, False)
    t.save()


def write_checked():
    t = Transcript('write_checked', """
Writing with read-back: every written block is read back at once, up to 9
times (200 to 1,000 ms), until it equals what was written; a station that
stores other bytes than it was sent fails the write.""",
                   2, {7: 'garble', **{n: 'drop' for n in range(112, 120)},
                       **{n: 'drop' for n in range(122, 131)}, 131: 'store-other'})
    t.activate()
    t.write(272, True)
    t.write(272, True)
    t.write(272, True)
    t.save()


def hangup():
    t = Transcript('hangup', """
A station whose line goes dead in the middle of a write: every attempt at the
block waits out its full reply time, the write fails after 10 attempts, and
the leave request goes unanswered.""",
                   2, {8: 'hangup'})
    t.activate()
    t.write(272, False)
    t.deactivate('yes')
    t.save()


if __name__ == '__main__':
    session()
    read()
    write()
    data_pass()
    write_checked()
    hangup()
