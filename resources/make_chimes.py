#!/usr/bin/env python3
"""Writes chimes.wav, the sound at the end of a backup or a restore.

  make_chimes.py OUT.wav

Three soft bell notes, one after the other, that ring out together: 22 kHz, one channel, 16 bits.
The result is the same on every machine, byte for byte.
"""
import math
import struct
import sys
import wave

RATE = 22050  # samples a second
LENGTH = 1.3  # seconds
LOUDEST = 0.55  # of what the format holds

# Frequency in hertz, and when the note is struck: G5, C6, E6, a chord that sounds finished.
NOTES = [(783.99, 0.0), (1046.50, 0.14), (1318.51, 0.28)]
# A bell's partials: multiple of the frequency, loudness, seconds until it has faded to a third.
PARTIALS = [(1.0, 1.0, 0.30), (2.0, 0.35, 0.18), (3.01, 0.12, 0.09)]
ATTACK = 0.006  # seconds; without it each note begins with a click
FADE_OUT = 0.15  # seconds at the end, down to silence


def sample(time):
    """The sound at a time in seconds, not scaled."""
    value = 0.0
    for frequency, struck in NOTES:
        age = time - struck
        if age <= 0:
            continue
        attack = min(1.0, age / ATTACK)
        for multiple, loudness, fade in PARTIALS:
            value += (attack * loudness * math.exp(-age / fade) *
                      math.sin(2 * math.pi * frequency * multiple * age))
    return value * min(1.0, (LENGTH - time) / FADE_OUT)


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: make_chimes.py OUT.wav")
    samples = [sample(i / RATE) for i in range(int(RATE * LENGTH))]
    scale = LOUDEST * 32767 / max(abs(value) for value in samples)
    with wave.open(sys.argv[1], "wb") as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(b"".join(struct.pack("<h", round(value * scale)) for value in samples))


if __name__ == "__main__":
    main()
