#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# A smart-http git server on 127.0.0.1 for the benchmarks: every request is answered by `git http-backend`
# run as a web server runs it (CGI), over the repositories below ROOT. Prints its port once listening;
# runs until killed.
#
# usage: smart-http-server.py ROOT
import http.server
import os
import subprocess
import sys
import urllib.parse

root = sys.argv[1]


class Backend(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def answer(self):
        target = urllib.parse.urlsplit(self.path)
        length = int(self.headers.get("Content-Length") or 0)
        body = self.rfile.read(length) if length else b""
        environment = dict(os.environ, GIT_PROJECT_ROOT=root, GIT_HTTP_EXPORT_ALL="1",
                           REQUEST_METHOD=self.command, PATH_INFO=urllib.parse.unquote(target.path),
                           QUERY_STRING=target.query, CONTENT_TYPE=self.headers.get("Content-Type") or "",
                           CONTENT_LENGTH=str(len(body)), REMOTE_ADDR="127.0.0.1", SERVER_PROTOCOL="HTTP/1.1")
        output = subprocess.run(["git", "http-backend"], input=body, env=environment, capture_output=True).stdout
        head, _, payload = output.partition(b"\r\n\r\n")
        status = 200
        headers = []
        for line in head.split(b"\r\n"):
            name, _, value = line.decode("latin-1").partition(":")
            if name.lower() == "status":
                status = int(value.split()[0])
            elif name:
                headers.append((name, value.strip()))
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Length", str(len(payload)))
        self.end_headers()
        self.wfile.write(payload)

    do_GET = do_POST = answer

    def log_message(self, *arguments):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Backend)
print(server.server_address[1], flush=True)
server.serve_forever()
