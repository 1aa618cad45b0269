"""Conversations as capture files: TCP segments with the bytes, places of cutting and times that a test wants."""

import struct
from dataclasses import dataclass

CLIENT, SERVER = 0, 1  # who sends

FIN, SYN, PSH, ACK = 1, 2, 8, 16


@dataclass
class Chunk:
    """Bytes that went over a connection together."""

    sender: int
    time: float  # seconds from the start of the capture
    data: bytes
    lost: bool = False  # it is not in the capture


@dataclass
class Segment:
    frame: int  # its number in the capture, from 1
    sender: int
    time: float
    data: bytes


def checksum(data):
    total = sum(struct.unpack(f"!{(len(data) + 1) // 2}H", data + b"\0" * (len(data) % 2)))
    while total > 0xFFFF:
        total = (total & 0xFFFF) + (total >> 16)
    return total ^ 0xFFFF


class Capture:
    """Writes a capture file, one whole connection after the other."""

    def __init__(self, path, port):
        self.path = path
        self.port = port
        self.frames = 0
        self.connections = []  # a list of segments for each
        self.file = open(path, "wb")
        self.file.write(struct.pack("=IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 262144, 1))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.file.close()

    def add_connection(self, chunks):
        """Each chunk is one segment, or more if it is too long for one."""
        client_port = 50000 + len(self.connections)
        self.ends = [(bytes([127, 0, 0, 1]), client_port), (bytes([127, 0, 0, 2]), self.port)]
        self.sequence = [1000, 2000]
        segments = []
        time = chunks[0].time
        self.write(CLIENT, time, SYN)
        self.write(SERVER, time, SYN | ACK)
        self.write(CLIENT, time, ACK)
        for chunk in chunks:
            for start in range(0, len(chunk.data), 65000):
                piece, time = chunk.data[start : start + 65000], chunk.time
                if chunk.lost:
                    self.sequence[chunk.sender] += len(piece)
                    continue
                self.write(chunk.sender, time, PSH | ACK, piece)
                segments.append(Segment(self.frames, chunk.sender, time, piece))
        self.write(CLIENT, time, FIN | ACK)
        self.write(SERVER, time, FIN | ACK)
        self.write(CLIENT, time, ACK)
        self.connections.append(segments)

    def write(self, sender, time, flags, data=b""):
        (source, source_port), (target, target_port) = self.ends[sender], self.ends[1 - sender]
        here = self.sequence[sender]
        there = self.sequence[1 - sender] if flags & ACK else 0
        self.sequence[sender] += len(data) + (1 if flags & (SYN | FIN) else 0)

        tcp = struct.pack("!HHIIBBHHH", source_port, target_port, here, there, 5 << 4, flags, 65535, 0, 0) + data
        pseudo = source + target + struct.pack("!BBH", 0, 6, len(tcp))
        tcp = tcp[:16] + struct.pack("!H", checksum(pseudo + tcp)) + tcp[18:]
        ip = struct.pack("!BBHHHBBH", 0x45, 0, 20 + len(tcp), 0, 0x4000, 64, 6, 0) + source + target
        ip = ip[:10] + struct.pack("!H", checksum(ip)) + ip[12:]
        frame = bytes(12) + b"\x08\x00" + ip + tcp

        micros = round(time * 1e6)
        self.file.write(struct.pack("=IIII", micros // 1000000, micros % 1000000, len(frame), len(frame)))
        self.file.write(frame)
        self.frames += 1


def cut(chunks, lengths):
    """The same bytes, in pieces of these lengths over and over."""
    turn, pieces = 0, []
    for chunk in chunks:
        start = 0
        while start < len(chunk.data):
            length = lengths[turn % len(lengths)]
            turn += 1
            pieces.append(Chunk(chunk.sender, chunk.time, chunk.data[start : start + length]))
            start += length
    return pieces


def glued(chunks):
    """The same bytes, with all that one side sent in a row as one chunk."""
    pieces = []
    for chunk in chunks:
        if pieces and pieces[-1].sender == chunk.sender:
            pieces[-1] = Chunk(chunk.sender, chunk.time, pieces[-1].data + chunk.data)
        else:
            pieces.append(chunk)
    return pieces
