"""A telephone out of the box: asks the local network by SIP where its file is, and
prints what it is told, one JSON list of datagrams.

    boot_phone.py <own address> <MAC, 12 digits> <model> <expected answers>
"""

import json
import socket
import sys

GROUP = ("224.0.1.75", 5060)
PATIENCE_S = 5.0
# How long it still listens when it has heard all that it expects.
QUIET_S = 0.3


def subscribe(address, port, mac, model):
    lines = [
        f"SUBSCRIBE sip:MAC%3A{mac}@224.0.1.75 SIP/2.0",
        f"Via: SIP/2.0/UDP {address}:{port};branch=z9hG4bK770412",
        f"From: <sip:MAC%3A{mac}@224.0.1.75>;tag=5150",
        f"To: <sip:MAC%3A{mac}@224.0.1.75>",
        f"Call-ID: 88200314@{address}",
        "CSeq: 2001 SUBSCRIBE",
        f"Contact: <sip:MAC%3A{mac}@{address}:{port}>",
        "Max-Forwards: 70",
        "Expires: 0",
        f'Event: ua-profile;profile-type="device";vendor="phone";model="{model}";version="1.0"',
        "Accept: application/url",
        "Content-Length: 0",
        "", ""]
    return "\r\n".join(lines).encode()


def main():
    address, mac, model, expected = sys.argv[1], sys.argv[2], sys.argv[3], int(sys.argv[4])
    heard = []
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as phone:
        phone.bind((address, 5060))
        phone.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(address))
        phone.sendto(subscribe(address, 5060, mac, model), GROUP)
        try:
            while True:
                phone.settimeout(PATIENCE_S if len(heard) < expected else QUIET_S)
                heard.append(phone.recv(65536).decode())
        except TimeoutError:
            pass
    print(json.dumps(heard))


if __name__ == "__main__":
    main()
