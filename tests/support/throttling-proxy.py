#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# A TCP proxy on 127.0.0.1 that passes the server's replies on at a limited rate: a slow network, so a
# transfer takes seconds. Prints its port once listening; runs until killed.
#
# usage: throttling-proxy.py TARGET_PORT BYTES_PER_SECOND
import sys

from tcp_relay import listen, proxy_forever

proxy_forever(listen(), int(sys.argv[1]), rate=float(sys.argv[2]))
