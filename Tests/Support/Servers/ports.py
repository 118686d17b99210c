"""Ports for the servers of tests."""

import contextlib
import random
import socket


def free_port():
    """Below those that the system hands out by itself: no connection takes it before its server does, or while that is down."""
    while True:
        port = random.randrange(20000, 32768)
        with contextlib.suppress(OSError), socket.socket() as free:
            free.bind(("127.0.0.1", port))
            return port
