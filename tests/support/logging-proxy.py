#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# An HTTP proxy on 127.0.0.1 that says what passed through it: CONNECT tunnels for https, requests with
# absolute targets passed on unchanged for http. Prints its port once listening, then the first request
# line of every connection; runs until killed. Given a user and password, it answers every request
# without them (basic proxy authentication) with 407, as a company's proxy does.
#
# usage: logging-proxy.py [USER:PASSWORD]
import base64
import socket
import sys
import threading

from tcp_relay import listen, pipe

listener = listen()
log = threading.Lock()
required = b"basic " + base64.b64encode(sys.argv[1].encode()) if len(sys.argv) > 1 else None


def authorized(head):
    for line in head.split(b"\r\n")[1:]:
        name, _, value = line.partition(b":")
        if name.strip().lower() == b"proxy-authorization":
            scheme, _, token = value.strip().partition(b" ")
            return scheme.lower() + b" " + token.strip() == required
    return False


def serve(client):
    head = b""
    while b"\r\n\r\n" not in head:
        data = client.recv(65536)
        if not data:
            client.close()
            return
        head += data
    request_line = head.split(b"\r\n", 1)[0].decode("latin-1")
    with log:
        print(request_line, flush=True)
    method, target = request_line.split(" ")[:2]
    if required and not authorized(head):
        client.sendall(b"HTTP/1.1 407 Proxy Authentication Required\r\nProxy-Authenticate: Basic realm=\"proxy\"\r\n"
                       b"Content-Length: 0\r\nConnection: close\r\n\r\n")
        client.close()
        return
    if method == "CONNECT":
        host, port = target.rsplit(":", 1)
        upstream = socket.create_connection((host, int(port)))
        client.sendall(b"HTTP/1.1 200 Connection established\r\n\r\n")
        rest = head.split(b"\r\n\r\n", 1)[1]
    else:
        authority = target.split("://", 1)[1].split("/", 1)[0]
        host, port = authority.rsplit(":", 1) if ":" in authority else (authority, "80")
        upstream = socket.create_connection((host, int(port)))
        rest = head
    if rest:
        upstream.sendall(rest)
    threading.Thread(target=pipe, args=(client, upstream), daemon=True).start()
    pipe(upstream, client)


while True:
    connection, _ = listener.accept()
    threading.Thread(target=serve, args=(connection,), daemon=True).start()
