#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""clients.py curl|requests VIEWLIBD: a client of others is a device at viewlibd.

It registers with a digest, keeps alive, posts a face with a picture, reads both back and unregisters; over HTTP and
HTTPS, with MD5 and with SHA-256. Exit status: 77 when the client is not installed.
"""
import base64
import hashlib
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SKIPPED = 77
DEVICE = "34020000001190000001"
SOURCE = DEVICE + "02" + "20240229235959" + "00001"
FACE = SOURCE + "06" + "00001"
USER, PASSWORD = "camera", "a secret; with \"quotes\""
# The smallest JPEG that has a size in its frame header: 1 by 1.
PICTURE = base64.b64decode(
    "/9j/4AAQSkZJRgABAQAAAQABAAD/2wBDAP//////////////////////////////////////////////////////////////////////////////"
    "////////wAALCAABAAEBAREA/8QAFAABAAAAAAAAAAAAAAAAAAAAA//EABQQAQAAAAAAAAAAAAAAAAAAAAD/2gAIAQEAAD8AN//Z")


class Curl:
    """The program, with a cookie-free connection for each call."""

    def __init__(self, base, certificate):
        self.base = base
        self.options = ["--cacert", certificate] if certificate else []

    @staticmethod
    def installed():
        return shutil.which("curl") is not None

    def call(self, method, path, body=None, digest=None):
        command = ["curl", "--silent", "--show-error", "--max-time", "20", "--request", method, *self.options,
                   "--header", "User-Identify: " + DEVICE, "--write-out", "\n%{http_code} %{num_connects}"]
        if digest:
            command += ["--digest", "--user", digest[0] + ":" + digest[1]]
        if body is not None:
            command += ["--header", "Content-Type: application/VIID+JSON;charset=UTF-8", "--data-binary", "@-"]
        done = subprocess.run(command + [self.base + path], input=body, stdout=subprocess.PIPE, check=True)
        answer, _, summary = done.stdout.rpartition(b"\n")
        return int(summary.split()[0]), answer


class Requests:
    """A session of Python's requests."""

    def __init__(self, base, certificate):
        import requests
        self.base = base
        self.session = requests.Session()
        self.session.trust_env = False
        self.session.verify = certificate or True
        self.session.headers["User-Identify"] = DEVICE
        self.digest_auth = requests.auth.HTTPDigestAuth

    @staticmethod
    def installed():
        try:
            import requests  # noqa: F401
            return True
        except ImportError:
            return False

    def call(self, method, path, body=None, digest=None):
        headers = {"Content-Type": "application/VIID+JSON;charset=UTF-8"} if body is not None else {}
        answer = self.session.request(method, self.base + path, data=body, headers=headers, timeout=20,
                                      auth=self.digest_auth(*digest) if digest else None)
        return answer.status_code, answer.content


class Server:
    def __init__(self, program, work, *options):
        self.data = os.path.join(work, "data")
        port_file = os.path.join(work, "port")
        self.log = open(os.path.join(work, "log"), "w+", encoding="utf-8")
        self.process = subprocess.Popen(
            [program, "--listen", "127.0.0.1", "--port", "0", "--port-file", port_file, "--data", self.data,
             "--user", USER, "--password", PASSWORD, *options], stdout=self.log, stderr=self.log)
        end = time.monotonic() + 30
        while not os.path.exists(port_file):
            if self.process.poll() is not None or time.monotonic() > end:
                raise RuntimeError("viewlibd does not start: " + self.output())
            time.sleep(0.02)
        with open(port_file, encoding="utf-8") as file:
            self.port = int(file.read())

    def output(self):
        self.log.seek(0)
        return self.log.read()

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(timeout=20)


def expect(what, found, wanted):
    if found != wanted:
        raise AssertionError(f"{what}: expected {wanted!r}, found {found!r}")


def status_of(answer):
    document = json.loads(answer)
    if "ResponseStatusListObject" in document:
        return document["ResponseStatusListObject"]["ResponseStatusObject"][0]
    return document["ResponseStatusObject"]


def face_document():
    return json.dumps({"FaceListObject": {"FaceObject": [{
        "FaceID": FACE, "InfoKind": 1, "SourceID": SOURCE, "DeviceID": DEVICE, "ShotTime": "20240229235959",
        "LeftTopX": 0, "LeftTopY": 0, "RightBtmX": 1, "RightBtmY": 1, "LocationMarkTime": "20240229235959",
        "FaceAppearTime": "20240229235959", "FaceDisAppearTime": "20240229235959", "GenderCode": "1",
        "IsDriver": 2, "IsForeigner": 2, "IsSuspectedTerrorist": 2, "IsCriminalInvolved": 2, "IsDetainees": 2,
        "IsVictim": 2, "IsSuspiciousPerson": 2,
        "SubImageList": {"SubImageInfoObject": [{
            "ImageID": SOURCE, "EventSort": 4, "DeviceID": DEVICE, "StoragePath": "", "Type": "11",
            "FileFormat": "Jpeg", "ShotTime": "20240229235959", "Width": 1, "Height": 1,
            "Data": base64.b64encode(PICTURE).decode()}]}}]}}).encode()


def be_a_device(client, data):
    session = lambda kind: json.dumps({kind + "Object": {"DeviceID": DEVICE}}).encode()

    status, _ = client.call("POST", "/VIID/System/Register", session("Register"), (USER, "wrong"))
    expect("a wrong password", status, 401)
    status, _ = client.call("POST", "/VIID/System/Keepalive", session("Keepalive"))
    expect("a keepalive of a device that is not registered", status, 401)

    status, answer = client.call("POST", "/VIID/System/Register", session("Register"), (USER, PASSWORD))
    expect("registration", (status, status_of(answer)["StatusCode"]), (200, 0))
    status, answer = client.call("POST", "/VIID/System/Keepalive", session("Keepalive"))
    expect("keepalive", (status, status_of(answer)["StatusCode"]), (200, 0))
    status, answer = client.call("GET", "/VIID/System/Time")
    expect("time", (status, len(json.loads(answer)["SystemTimeObject"]["LocalTime"])), (200, 14))

    status, answer = client.call("POST", "/VIID/Faces", face_document())
    expect("a face", (status, status_of(answer)["StatusCode"]), (200, 0))
    expect("the face's identifier", status_of(answer)["Id"], FACE)
    status, answer = client.call("GET", "/VIID/Faces/" + FACE)
    expect("the face read back", (status, FACE.encode() in answer), (200, True))
    status, answer = client.call("GET", "/VIID/Pictures/1")
    expect("the picture read back", (status, answer), (200, PICTURE))
    with open(os.path.join(data, "pictures", "00000001.jpg"), "rb") as file:
        expect("the picture's file", hashlib.md5(file.read()).hexdigest(), hashlib.md5(PICTURE).hexdigest())

    status, answer = client.call("POST", "/VIID/System/UnRegister", session("UnRegister"), (USER, PASSWORD))
    expect("unregistration", (status, status_of(answer)["StatusCode"]), (200, 0))
    status, _ = client.call("POST", "/VIID/Faces", face_document())
    expect("a face after that", status, 401)


def main():
    client_type = {"curl": Curl, "requests": Requests}[sys.argv[1]]
    if not client_type.installed():
        print(sys.argv[1] + " is not installed")
        return SKIPPED
    for scheme in ("http", "https"):
        for algorithm in ("md5", "sha-256", "sha-256,md5"):
            with tempfile.TemporaryDirectory(prefix="viewlib-peers-") as work:
                options = ["--algorithms", algorithm] + (["--https"] if scheme == "https" else [])
                server = Server(sys.argv[2], work, *options)
                try:
                    certificate = os.path.join(server.data, "viewlib.crt") if scheme == "https" else None
                    be_a_device(client_type(f"{scheme}://127.0.0.1:{server.port}", certificate), server.data)
                    expect("the end of viewlibd", server.stop(), 0)
                    print(f"ok  {sys.argv[1]} over {scheme} with {algorithm}")
                except Exception:
                    print(server.output())
                    raise
                finally:
                    server.process.kill()
                    server.process.wait()
    return 0


if __name__ == "__main__":
    sys.exit(main())
