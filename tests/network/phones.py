#!/usr/bin/env python3
"""Phones that boot without a configuration, as real ones do: each asks the local network by SIP
where its file is, again until it is answered, and fetches the file. Prints as JSON what each heard
and fetched.

    phones.py --count 50 192.0.2.20 0200a7000001 KTP2135
"""

import argparse
import contextlib
import json
import socket
import struct
import threading
import time
import urllib.request

GROUP = ("224.0.1.75", 5060)
PAUSES_S = (0.5, 1, 2, 4)  # until SIP's next repetition
QUIET_S = 1.0  # in which an answer too many would come


def subscribe(via, mac, model):
    identity = f"<sip:MAC%3A{mac}@{GROUP[0]}>"
    return "\r\n".join([
        f"SUBSCRIBE sip:MAC%3A{mac}@{GROUP[0]} SIP/2.0",
        f"Via: SIP/2.0/UDP {via};branch=z9hG4bK{mac}", f"From: {identity};tag=5150",
        f"To: {identity}", f"Call-ID: {mac}@{via}", "CSeq: 2001 SUBSCRIBE",
        f"Contact: <sip:MAC%3A{mac}@{via}>", "Max-Forwards: 70", "Expires: 0",
        f'Event: ua-profile;profile-type="device";vendor="phone";model="{model}";version="1.0"',
        "Accept: application/url", "Content-Length: 0", "", ""]).encode()


def send_damaged(address):
    """A datagram whose checksum is wrong: whoever waits for one is woken, and then there is none."""
    data = bytes(200)  # a short one is looked at before
    with socket.socket(socket.AF_INET, socket.SOCK_RAW, socket.IPPROTO_UDP) as sock:
        sock.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(address))
        header = struct.pack("!4H", GROUP[1], GROUP[1], 8 + len(data), 1)
        sock.sendto(header + data, GROUP)


def boot(address, mac, model, story):
    """One phone; what it met is in `story` afterwards."""
    story.update(mac=mac, model=model, heard=[], file="")
    begin = time.monotonic()
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sock:
        sock.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(address))
        sock.bind((address, 0))
        story["contact"] = f"{address}:{sock.getsockname()[1]}"
        for pause in PAUSES_S:
            sock.sendto(subscribe(story["contact"], mac, model), GROUP)
            sock.settimeout(pause)
            try:
                while True:
                    story["heard"].append(sock.recv(65536).decode())
                    sock.settimeout(QUIET_S)
            except TimeoutError:
                if story["heard"]:
                    break
    if len(story["heard"]) < 2:
        return
    url = story["heard"][-1].partition("\r\n\r\n")[2]
    request = urllib.request.Request(url.rstrip("/") + f"/cfg{mac}.xml",
                                     headers={"User-Agent": f"{model} 1.0"})
    with contextlib.suppress(OSError), urllib.request.urlopen(request, timeout=10) as answer:
        story["file"] = answer.read().decode()
    story["seconds"] = time.monotonic() - begin - QUIET_S


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--count", type=int, default=1, help="boot within a second, MACs count up")
    parser.add_argument("address", help="one's own")
    parser.add_argument("mac")
    parser.add_argument("model", nargs="+", help="in turn")
    options = parser.parse_args()
    stories = [{} for _ in range(options.count)]
    send_damaged(options.address)
    threads = [threading.Timer(number / options.count, boot, (
        options.address, format(int(options.mac, 16) + number, "012x"),
        options.model[number % len(options.model)], story))
        for number, story in enumerate(stories)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    print(json.dumps(stories))


if __name__ == "__main__":
    main()
