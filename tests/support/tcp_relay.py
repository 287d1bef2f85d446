# SPDX-License-Identifier: MIT
# What the test proxies share: a listener on a free port of 127.0.0.1 that says its port, and the relay
# of one direction of a connection.
import socket


def listen():
    """A listening socket on a free port of 127.0.0.1; its port is printed for the test to read."""
    listener = socket.socket()
    listener.bind(("127.0.0.1", 0))
    listener.listen(16)
    print(listener.getsockname()[1], flush=True)
    return listener


def pipe(source, sink):
    """Passes everything from source to sink until source ends, then ends sink's sending side."""
    try:
        while data := source.recv(65536):
            sink.sendall(data)
    except OSError:
        pass
    finally:
        try:
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass
