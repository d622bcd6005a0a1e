#!/usr/bin/env python3
"""Makes accept.wav (two rising notes) and reject.wav (one low buzz) next to this script.

Short on purpose: the program does nothing else while a sound plays.
"""
import math
import pathlib
import struct
import wave

RATE = 22050


def tone(hertz, seconds, partials):
    count = int(RATE * seconds)
    ramp = int(RATE * 0.008)  # without it the note would begin and end with a click
    total = sum(partials)
    for i in range(count):
        envelope = min(1.0, i / ramp, (count - 1 - i) / ramp) * math.exp(-2.5 * i / count)
        phase = 2 * math.pi * hertz * i / RATE
        yield envelope * sum(p * math.sin((k + 1) * phase) for k, p in enumerate(partials)) / total


def write(name, *notes):
    samples = [s for note in notes for s in note]
    frames = b"".join(struct.pack("<h", round(s * 0.6 * 32767)) for s in samples)
    path = pathlib.Path(__file__).with_name(name)
    with wave.open(str(path), "wb") as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(frames)


write("accept.wav", tone(880, 0.09, [1, 0.3]), tone(1318.5, 0.16, [1, 0.3]))
write("reject.wav", tone(165, 0.28, [1, 0.8, 0.6, 0.5, 0.4]))
