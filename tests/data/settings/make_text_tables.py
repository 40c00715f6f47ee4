#!/usr/bin/env python3
"""Writes windows1250.tsv and utf8.tsv from Python's own codecs, so that the
C++ code page table and UTF-8 reader are checked against an independent
reference.  Run from any directory:  python3 make_text_tables.py
"""
import os

HERE = os.path.dirname(os.path.abspath(__file__))
UNDEFINED = {0x81, 0x83, 0x88, 0x90, 0x98}  # the C1 control of the same value


def char_of(byte):
    return chr(byte) if byte in UNDEFINED else bytes([byte]).decode("cp1250")


BYTE_OF = {ord(char_of(b)): b for b in range(256)}


def well_formed(data, pos):
    """Length of the well-formed UTF-8 character at pos, or 0."""
    for length in range(1, 5):
        try:
            if len(data[pos:pos + length].decode("utf-8")) == 1 and pos + length <= len(data):
                return length
        except UnicodeDecodeError:
            pass
    return 0


def expected(data):
    """ok, bad or no; the bytes or the failing character's index; its code point; the character count."""
    out, result, pos, index, count = bytearray(), None, 0, 0, 0
    while pos < len(data):
        length = well_formed(data, pos)
        if result is None:
            if length == 0:
                result = f"bad\t{index}\tFFFD"
            else:
                c = ord(data[pos:pos + length].decode("utf-8"))
                if c in BYTE_OF:
                    out.append(BYTE_OF[c])
                else:
                    result = f"no\t{index}\t{c:04X}"
        pos += length or 1
        index += 1
        count += 1
    return result or "ok\t" + out.hex(" ").upper() + "\t-", count


TEXTS = [
    ("Empty", ""), ("Ascii", "Alarm 1: door open!"), ("Nul", "a\0b"),
    ("CzechPangram", "Příliš žluťoučký kůň úpěl ďábelské ódy"), ("CzechCapitals", "ŠČŘŽÝÁÍÉÚŮĎŤŇ"),
    ("Typography", "„Ahoj“ – 10 €"), ("Slovak", "Ľúbostná pieseň, dĺžeň ôsmich"),
    ("Polish", "Zażółć gęślą jaźń"), ("Hungarian", "Árvíztűrő tükörfúrógép"),
    ("Romanian", "Vânătorul îşi ţine puşca"), ("Marks", "ˇ˘˛˝˙ §°±×÷ ‰™…†‡•"),
    ("C1StandIns", "\u0081\u0083\u0088\u0090\u0098"),
    ("SpanishEnye", "abc€ñ"), ("Omega", "\u03A9"), ("Arrow", "a\u2192b"), ("Emoji", "ok \U0001F600"),
    ("Cjk", "x\u4E2D\u6587"), ("IndexCountsCharacters", "Příliš ñ"), ("FirstOfSeveral", "ž\u03A9ñ"),
    ("SharesLowBitsWithSCaron", "\U00010160"), ("OtherC1Control", "\u0080"), ("LastTwoByte", "\u07FF"),
    ("FirstThreeByte", "\u0800"), ("LastBeforeSurrogates", "\uD7FF"), ("FirstAfterSurrogates", "\uE000"),
    ("LastThreeByte", "\uFFFF"), ("FirstFourByte", "\U00010000"), ("LastCodePoint", "\U0010FFFF"),
]
BROKEN = [
    ("UnmappableAheadOfBroken", b"\xc3\xb1\x80"), ("LoneContinuation", b"\x80"),
    ("ContinuationAfterText", b"ab\xbf"), ("ContinuationBetweenLetters", b"a\x80b"),
    ("TruncatedTwoByte", b"\xc5"), ("TruncatedAfterText", "žlu".encode() + b"\xc5"),
    ("LeadFollowedByAscii", b"\xc5x"), ("TruncatedThreeByte", b"\xe2\x82"), ("CutInsideText", b"\xc5\xbe\xc5"),
    ("ThreeByteBadSecond", b"\xe2(\xa1"), ("ThreeByteBadThird", b"\xe2\x82("),
    ("TruncatedFourByte", b"a\xf0\x9f\x98"), ("FourByteBadFourth", b"\xf0\x9f\x98("),
    ("EmojiThenTruncatedEmoji", b"\xf0\x9f\x98\x80\xf0\x9f\x98"),
    ("OverlongSlash", b"\xc0\xaf"), ("OverlongTwoByteLimit", b"\xc1\xbf"), ("OverlongThreeByte", b"\xe0\x80\xaf"),
    ("OverlongThreeByteLimit", b"\xe0\x9f\xbf"), ("OverlongFourByte", b"\xf0\x80\x80\xaf"),
    ("OverlongFourByteLimit", b"\xf0\x8f\xbf\xbf"), ("HighSurrogate", b"\xed\xa0\x80"),
    ("LowSurrogate", b"x\xed\xbf\xbf"), ("BeyondLastCodePoint", b"\xf4\x90\x80\x80"),
    ("FourByteLeadTooHigh", b"\xf5\x80\x80\x80"), ("FiveByteForm", b"\xf8\x88\x80\x80\x80"),
    ("ByteFE", b"\xfe"), ("ByteFF", "ž".encode() + b"\xff"), ("BrokenAfterNul", b"\0\x80"),
    ("BrokenInsideCzech", "ž".encode() + b"\xff" + "luť".encode()),
]

with open(os.path.join(HERE, "windows1250.tsv"), "w") as f:
    f.write("# byte\tUnicode code point (made by make_text_tables.py)\n")
    for b in range(256):
        f.write(f"{b:02X}\t{ord(char_of(b)):04X}\n")

with open(os.path.join(HERE, "utf8.tsv"), "w") as f:
    f.write("# name\tUTF-8 bytes\tok (Windows-1250 bytes), bad (broken UTF-8) or no (a character without a byte)"
            "\tthe bytes or the failing character's index\tits code point\tcharacters (made by make_text_tables.py)\n")
    for name, data in [(n, t.encode()) for n, t in TEXTS] + BROKEN:
        result, count = expected(data)
        f.write(f"{name}\t{data.hex(' ').upper()}\t{result}\t{count}\n")
