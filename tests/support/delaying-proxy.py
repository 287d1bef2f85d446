#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# A TCP proxy on 127.0.0.1 that holds every connection for a while before passing it on to the target
# port: a server that is slow to answer. Prints its port once listening; runs until killed.
#
# usage: delaying-proxy.py TARGET_PORT DELAY_SECONDS
import sys

from tcp_relay import listen, proxy_forever

proxy_forever(listen(), int(sys.argv[1]), delay=float(sys.argv[2]))
