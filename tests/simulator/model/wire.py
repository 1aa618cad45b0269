"""The wire as the model of the simulator sees it: elements as texts, and a client on a plain socket."""

import re
import socket
from xml.sax.saxutils import escape

GENERAL, NO_CLIP = "general", "clipnotfound"  # the codes of errors


class X(str):
    """Whole elements."""


def x(tag, *inside, **fields):
    """An element, with fields in the order of the wire; those that are None are left out."""
    content = "".join(i if isinstance(i, X) else escape(str(i), {'"': "&quot;"}) for i in inside)
    for name, value in fields.items():
        if value is not None:
            content += x(name, *(value if isinstance(value, list) else [value]))
    return X(f"<{tag}>{content}</{tag}>" if content else f"<{tag}/>")


def reply(body):
    return f"<reply><xid>x</xid>{body}</reply>"


OK, END = reply("<ok/>"), "<reply><xid>end</xid><ok/></reply>"


def error(code):
    return reply(x("error", ErrorCode=code))


class Client:
    def __init__(self, address):
        self.socket = socket.create_connection((address, 8913))
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)

    def hear(self, *commands):
        """All that comes until the server has done these; messages for people and stamps left out."""
        sent = "".join(f"<cmd><xid>x</xid>{command}</cmd>" for command in commands)
        self.socket.sendall((sent + "<cmd><xid>end</xid><sync/></cmd>").encode())
        heard = b""
        while not heard.replace(b"\r\n", b"").endswith(END.encode()):
            more = self.socket.recv(1 << 20)
            assert more, "the server has closed the connection"
            heard += more
        text = heard.decode().replace("\r\n", "")[: -len(END)]
        return re.sub(r"<(ErrorMessage|\w+Stamp)>[^<]*</\1>", "", text)

    def leave(self):
        self.socket.shutdown(socket.SHUT_WR)
        while self.socket.recv(1 << 20):
            pass
        self.socket.close()
