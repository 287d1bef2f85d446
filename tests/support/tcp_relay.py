# SPDX-License-Identifier: MIT
# What the test proxies share: a listener on a free port of 127.0.0.1 that says its port, the relay of
# one direction of a connection, and a proxy that passes connections on, late or slowly.
import socket
import threading
import time


def listen():
    """A listening socket on a free port of 127.0.0.1; its port is printed for the test to read."""
    listener = socket.socket()
    listener.bind(("127.0.0.1", 0))
    listener.listen(16)
    print(listener.getsockname()[1], flush=True)
    return listener


def pipe(source, sink, rate=None):
    """Passes everything from source to sink until source ends, then ends sink's sending side; with a
    rate, at most that many bytes a second, in twentieths of a second."""
    chunk = max(1, int(rate / 20)) if rate else 65536
    try:
        while data := source.recv(chunk):
            sink.sendall(data)
            if rate:
                time.sleep(len(data) / rate)
    except OSError:
        pass
    finally:
        try:
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass


def proxy_forever(listener, target_port, delay=0.0, rate=None):
    """Passes every connection on to target_port after `delay` seconds, the replies at most `rate`
    bytes a second (no limit without one)."""

    def serve(client):
        time.sleep(delay)
        upstream = socket.create_connection(("127.0.0.1", target_port))
        threading.Thread(target=pipe, args=(client, upstream), daemon=True).start()
        pipe(upstream, client, rate)

    while True:
        connection, _ = listener.accept()
        threading.Thread(target=serve, args=(connection,), daemon=True).start()
