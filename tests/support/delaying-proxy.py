#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# A TCP proxy on 127.0.0.1 that holds every connection for a while before passing it on to the target
# port: a server that is slow to answer. Prints its port once listening; runs until killed.
#
# usage: delaying-proxy.py TARGET_PORT DELAY_SECONDS
import socket
import sys
import threading
import time

from tcp_relay import listen, pipe

target_port, delay = int(sys.argv[1]), float(sys.argv[2])
listener = listen()



def serve(client):
    time.sleep(delay)
    upstream = socket.create_connection(("127.0.0.1", target_port))
    threading.Thread(target=pipe, args=(client, upstream), daemon=True).start()
    pipe(upstream, client)


while True:
    connection, _ = listener.accept()
    threading.Thread(target=serve, args=(connection,), daemon=True).start()
