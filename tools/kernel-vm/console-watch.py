#!/usr/bin/env python3
"""Reads the test machine's serial console on standard input: prints the job's lines, presses keys
on the emulated USB keyboard when the job asks for it, and exits with the job's exit code.

    console-watch.py QMP_SOCKET CONSOLE_LOG

A job line "ORVANE-QMP press QCODE" or "ORVANE-QMP release QCODE" (QCODE as qemu names keys:
caps_lock, a, shift, ...) becomes a QMP input-send-event. Lines that are not the job's go to
CONSOLE_LOG, shown when the result line never comes (a guest that hung, crashed or timed out).
Exits with the job's exit code, or 1 when the result line is missing or a key request failed.
"""
import json
import re
import socket
import sys
import time

JOB, START, RESULT, REQUEST = "ORVANE| ", "ORVANE-START ", "ORVANE-RESULT ", "ORVANE-QMP "
# The firmware clears the screen with escape sequences that end no line.
ESCAPE = re.compile(r"\x1b(\[[0-9;?]*[A-Za-z]|[^[])")


class Qmp:
    def __init__(self, path):
        self.sock = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.sock.settimeout(10)
        self.sock.connect(path)
        self.stream = self.sock.makefile("rb")
        self.stream.readline()  # the greeting
        self.execute("qmp_capabilities")

    def execute(self, command, arguments=None):
        message = {"execute": command}
        if arguments is not None:
            message["arguments"] = arguments
        self.sock.sendall(json.dumps(message).encode() + b"\n")
        while True:  # asynchronous events may come before the answer
            answer = json.loads(self.stream.readline())
            if "error" in answer:
                raise RuntimeError(f"{command}: {answer['error'].get('desc', answer['error'])}")
            if "return" in answer:
                return answer["return"]

    def key(self, qcode, down):
        key = {"type": "qcode", "data": qcode}
        self.execute("input-send-event", {"events": [{"type": "key", "data": {"down": down, "key": key}}]})


def main():
    socket_path, log_path = sys.argv[1], sys.argv[2]
    began = time.monotonic()
    started = result = qmp = None
    failed_requests = 0
    with open(log_path, "w", encoding="utf-8") as log:
        for raw in sys.stdin.buffer:
            line = raw.decode("utf-8", "replace").rstrip("\r\n")
            bare = ESCAPE.sub("", line)
            if line.startswith(JOB):
                payload = line[len(JOB):]
                print(payload, flush=True)
                if payload.startswith(REQUEST):
                    action, _, qcode = payload[len(REQUEST):].strip().partition(" ")
                    try:
                        if action not in ("press", "release") or not qcode:
                            raise RuntimeError(f"unknown request {payload!r}")
                        qmp = qmp or Qmp(socket_path)
                        qmp.key(qcode, action == "press")
                    except (OSError, RuntimeError, ValueError) as error:
                        failed_requests += 1
                        print(f"kernel-vm: key request failed: {error}", file=sys.stderr, flush=True)
            elif bare.startswith(START):
                started = (time.monotonic() - began, bare[len(START):])
            elif bare.startswith(RESULT) and bare[len(RESULT):].strip().isdigit():
                result = int(bare[len(RESULT):])
            else:
                log.write(line + "\n")
                log.flush()
    elapsed = time.monotonic() - began
    if result is None:
        print("kernel-vm: the guest printed no result line (hung, crashed or timed out); its console:",
              file=sys.stderr)
        with open(log_path, encoding="utf-8") as log:
            sys.stderr.write("".join(log.readlines()[-40:]))
        return 1
    boot = f"{started[0]:.1f} s (guest uptime {started[1]} s)" if started else "unknown"
    print(f"kernel-vm: job started {boot} after launch, machine done after {elapsed:.1f} s, exit code {result}",
          file=sys.stderr)
    # A job that asked for keys it never got must not pass.
    return 1 if result == 0 and failed_requests else result


if __name__ == "__main__":
    sys.exit(main())
