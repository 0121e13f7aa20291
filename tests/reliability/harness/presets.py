"""Preset files, written and read without any code of the program under test."""

from __future__ import annotations

import dataclasses
import hashlib
import random
import struct

HEADER = struct.Struct("<4sI5sBH16s")
DESCRIPTOR = struct.Struct("<II")
PATCH = struct.Struct("<4sIBHB16s")
BLOCK = struct.Struct("<4sI")
TAG_SIZE = BLOCK.size
NAME_SIZE = 16
NAME_WORDS = ("Warm", "Café", "Lead", "A/B", "Größe", "Dub", "Rythm", "東京", "Solo", "Edge")


@dataclasses.dataclass(frozen=True)
class Preset:
    """One patch of a preset file. `response` is the user impulse response without its number, empty for none."""

    name: str
    data: bytes
    response: bytes = b""

    @property
    def digest(self) -> str:
        """Tells apart what the patch sounds like; the name does not count."""
        digest = hashlib.sha256(struct.pack("<QQ", len(self.data), len(self.response)))
        digest.update(self.data)
        digest.update(self.response)
        return digest.hexdigest()


def random_presets(chance: random.Random, count: int) -> list[Preset]:
    """Presets with contents of their own; their names differ in more than the last character."""
    presets = []
    for _ in range(count):
        name = f"{chance.randrange(10_000):04} {chance.choice(NAME_WORDS)}"
        response = chance.randbytes(2 * chance.randrange(20, 2000)) if chance.random() < 0.3 else b""
        presets.append(Preset(name, chance.randbytes(chance.randrange(40, 700)), response))
    return presets


def encode(presets: list[Preset], version: bytes = b"V1.20") -> bytes:
    blocks = []
    for index, preset in enumerate(presets):
        name = preset.name.encode()
        if len(name) > NAME_SIZE:
            raise ValueError(f"{preset.name!r} is longer than its field")
        size = PATCH.size - TAG_SIZE + len(preset.data)
        block = PATCH.pack(b"MRAP", size, 0, index, 0, name) + preset.data
        if preset.response:
            block += BLOCK.pack(b"RISU", 4 + len(preset.response)) + struct.pack("<I", index) + preset.response
        blocks.append(block)
    offset = HEADER.size + DESCRIPTOR.size * len(blocks)
    descriptors = b""
    for block in blocks:
        descriptors += DESCRIPTOR.pack(offset, len(block))
        offset += len(block)
    header = HEADER.pack(b"TSRP", offset - TAG_SIZE, version, 0, len(blocks), bytes(16))
    body = header + descriptors + b"".join(blocks) + b"\x10"
    total = sum(body)
    return body + struct.pack("<H", ((total & 0x0F) << 8) | ((total >> 4) & 0x0F))


def decode(content: bytes) -> list[Preset]:
    """Raises an exception for a file that is not complete to the last byte."""
    tag, size, _, _, count, _ = HEADER.unpack_from(content)
    if tag != b"TSRP" or size + TAG_SIZE + 3 != len(content):
        raise ValueError("not a complete preset file")
    total = sum(content[:-2])
    if struct.unpack("<H", content[-2:])[0] != ((total & 0x0F) << 8) | ((total >> 4) & 0x0F):
        raise ValueError("wrong checksum")
    presets = []
    for index in range(count):
        offset, length = DESCRIPTOR.unpack_from(content, HEADER.size + DESCRIPTOR.size * index)
        block = content[offset : offset + length]
        _, patch_size, _, _, _, name = PATCH.unpack_from(block)
        end = TAG_SIZE + patch_size
        response = block[end + BLOCK.size + 4 :] if len(block) > end else b""
        presets.append(Preset(name.rstrip(b"\0").decode(), block[PATCH.size : end], response))
    return presets
