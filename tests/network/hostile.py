#!/usr/bin/env python3
"""A host that has plug-and-play requests answered as often as it can.

Sends SUBSCRIBEs of a listed telephone at a steady rate, from each of its addresses in turn, and
counts what comes back. Prints JSON.
"""

import argparse
import json
import select
import socket
import time

SIP_PORT = 5060


def subscribe(mac, via):
    identity = f"<sip:MAC%3A{mac}@224.0.1.75>"
    return "\r\n".join([
        f"SUBSCRIBE sip:MAC%3A{mac}@224.0.1.75 SIP/2.0", f"Via: SIP/2.0/UDP {via};branch=z9hG4bK1",
        f"From: {identity};tag=1", f"To: {identity}", "Call-ID: 1@phone", "CSeq: 1 SUBSCRIBE",
        'Event: ua-profile;vendor="Example";model="KTP2135"', "Content-Length: 0", "", ""]).encode()


def most_in_a_second(times):
    most = first = 0
    for last, moment in enumerate(times):
        while times[first] <= moment - 1:
            first += 1
        most = max(most, last - first + 1)
    return most


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--address", action="append", required=True, help="of its own")
    parser.add_argument("--via", help="where the answers are to go, instead of back")
    parser.add_argument("--target", required=True, help="the program's address")
    parser.add_argument("--mac", required=True)
    parser.add_argument("--rate", type=int, default=2000)
    parser.add_argument("--seconds", type=float, default=3)
    options = parser.parse_args()

    sockets, requests = [], []
    for address in options.address:
        sock = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        sock.bind((address, 0))
        sockets.append(sock)
        via = options.via or f"{address}:{sock.getsockname()[1]}"
        requests.append(subscribe(options.mac, via))

    answers = []
    sent = 0
    begin = time.monotonic()
    total = int(options.rate * options.seconds)
    while sent < total or time.monotonic() < begin + options.seconds + 1:
        due = min(total, int((time.monotonic() - begin) * options.rate))
        for number in range(sent, due):
            which = number % len(sockets)
            sockets[which].sendto(requests[which], (options.target, SIP_PORT))
        sent = due
        for sock in select.select(sockets, [], [], 0.002)[0]:
            sock.recv(65536)
            answers.append(time.monotonic())
    print(json.dumps({"sent": sent, "answers": len(answers),
                      "most_in_a_second": most_in_a_second(answers)}))


if __name__ == "__main__":
    main()
