#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# A TCP proxy on 127.0.0.1 that passes the server's replies on at a limited rate: a slow network, so a
# transfer takes seconds. Prints its port once listening; runs until killed.
#
# usage: throttling-proxy.py TARGET_PORT BYTES_PER_SECOND
import socket
import sys
import threading
import time

from tcp_relay import listen, pipe

target_port, rate = int(sys.argv[1]), float(sys.argv[2])
listener = listen()


def slow_pipe(source, sink):
    """As pipe, but at most `rate` bytes a second, in twentieths of a second."""
    chunk = max(1, int(rate / 20))
    try:
        while data := source.recv(chunk):
            sink.sendall(data)
            time.sleep(len(data) / rate)
    except OSError:
        pass
    finally:
        try:
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass


def serve(client):
    upstream = socket.create_connection(("127.0.0.1", target_port))
    threading.Thread(target=pipe, args=(client, upstream), daemon=True).start()
    slow_pipe(upstream, client)


while True:
    connection, _ = listener.accept()
    threading.Thread(target=serve, args=(connection,), daemon=True).start()
