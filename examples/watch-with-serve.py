#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints what happens in a folder, as `zef serve` tells it: watch-with-serve.py FOLDER"""

import json
import pathlib
import shutil
import subprocess
import sys


def watch(folder):
    program = shutil.which("zef") or pathlib.Path(__file__).resolve().parent.parent / "zef"
    server = subprocess.Popen([program, "serve"], encoding="utf-8",
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    names = {}  # by the id, which stays with one file: a file that is gone has no path any more

    def name(file):
        names[file["id"]] = file["path"] or names.get(file["id"], "?")
        return ascii(names[file["id"]])

    def read(until=None):
        for message in map(json.loads, server.stdout):
            if "method" in message:
                for change in message["params"].get("changes", []):
                    print(f"{change['name']:<15}", name(change["file"]), flush=True)
            elif "error" in message:
                sys.exit(message["error"]["message"])
            elif message["id"] == until:
                return message["result"]
        sys.exit("zef serve has ended")

    def request(method, **params):
        message = {"jsonrpc": "2.0", "id": method, "method": method, "params": params}
        print(json.dumps(message), file=server.stdin, flush=True)
        return read(until=method)

    # A URL, because a path that is no valid text can't be written in JSON.
    url = pathlib.Path(folder).resolve().as_uri()
    watched = request("subscribe", subscriber="me", url=url)
    if not watched:
        sys.exit(f"{folder}: no folder that can be watched")
    files = request("subscription", subscription=watched["subscription"])["files"]
    print("Watching", *map(name, files), sep="\n  ", flush=True)
    read()


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    try:
        watch(sys.argv[1])
    except OSError as error:
        sys.exit(f"zef serve: {error}")
    except KeyboardInterrupt:
        sys.exit(130)
