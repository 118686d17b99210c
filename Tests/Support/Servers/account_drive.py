#!/usr/bin/env python3
"""Stands in for a drive with accounts, uploads in chunks and comments, for as long as its standard input is open.

It is strict: what the documentation of chunked upload (version 2) and of the comments forbids to a client, as the open cloud servers
publish it, is refused, and why goes to standard error and into /state, which tells what the drive keeps. At its start it prints its
address; the drive is /remote.php/webdav, its user ada with the password "sesame". Lines of standard input are orders, each answered by
"done":

    forgetful     conditions of a MOVE are not looked at
    corrupt       what is kept from now on has another first letter than what was sent
    versions      what is written over is kept as a version
    mute          there are no comments from now on
    forgive       what was refused up to now is forgotten
    busy SECONDS  uploads are refused for so long, with the date at which they will be taken again
    clock SECONDS the server's clock is so far off
"""

import base64
import email.utils
import hashlib
import http.server
import json
import re
import secrets
import sys
import threading
import time
import urllib.parse
import xml.etree.ElementTree as xml

USER, PASSWORD = "ada", "sesame"
FILES, UPLOADS, COMMENTS = f"/remote.php/dav/files/{USER}", f"/remote.php/dav/uploads/{USER}", "/remote.php/dav/comments/files"
DAV, OWN = "{DAV:}", "{http://owncloud.org/ns}"
LEAST_CHUNK, MOST_CHUNK = 5 * 10**6, 5 * 10**9
LONGEST_COMMENT = 1000


class Refused(Exception):
    def __init__(self, status, why="", *headers):
        super().__init__(why)
        self.status, self.headers = status, headers


def demand(condition, why, status=400):
    if not condition:
        raise Refused(status, why)


class Nested:
    """An element as the value of a property."""

    def __init__(self, tag, text=None):
        self.tag, self.text = tag, text


class File:
    def __init__(self, content, kept=None):
        self.content, self.etag = content, f'"{secrets.token_hex(8)}"'
        self.id = kept.id if kept else str(secrets.randbelow(10**6) + 1)
        self.properties = kept.properties if kept else {}
        self.modified = State.now()


class Upload:
    def __init__(self, destination):
        self.destination, self.chunks = destination, {}


class State:
    lock = threading.Lock()
    entries = {"": None}  # By path; a folder is None.
    uploads, comments, versions, refusals = {}, {}, {}, []
    is_mute = is_forgetful = is_corrupt = has_versions = False
    busy_until = offset = 0

    @classmethod
    def now(cls):
        return int(time.time()) + cls.offset

    @classmethod
    def etag_of_folder(cls, folder):
        """Another one whenever something in it changes, at whatever depth."""
        within = [(path, file and file.etag) for path, file in sorted(cls.entries.items()) if not folder or path.startswith(folder + "/")]
        return f'"{hashlib.sha1(repr(within).encode()).hexdigest()}"'


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def date_time_string(self, timestamp=None):
        return email.utils.formatdate(State.now() if timestamp is None else timestamp, usegmt=True)

    def handle_request(self):
        self.path = urllib.parse.unquote(urllib.parse.urlsplit(self.path).path)
        wanted = int(self.headers.get("Content-Length", 0))
        self.body = self.rfile.read(wanted)
        self.is_whole = len(self.body) == wanted
        with State.lock:
            try:
                self.route()
            except Refused as refused:
                if str(refused):
                    why = f"{self.command} {self.path}: {refused}"
                    State.refusals.append(why)
                    print(why, file=sys.stderr, flush=True)
                self.answer(refused.status, b"", *refused.headers)

    do_GET = do_HEAD = do_POST = do_PUT = do_DELETE = do_MKCOL = do_MOVE = do_COPY = handle_request
    do_PROPFIND = do_PROPPATCH = do_REPORT = do_LOCK = do_UNLOCK = handle_request

    def route(self):
        if self.path == "/state":
            return self.answer(200, json.dumps({
                "files": {path: len(file.content) for path, file in State.entries.items() if file},
                "uploads": {name: sorted(upload.chunks) for name, upload in State.uploads.items()},
                "versions": State.versions,
                "comments": [comment for comments in State.comments.values() for comment in comments],
                "refusals": State.refusals}).encode())
        login = "Basic " + base64.b64encode(f"{USER}:{PASSWORD}".encode()).decode()
        if self.headers.get("Authorization") != login:
            raise Refused(401, "", ("WWW-Authenticate", 'Basic realm="drive"'))
        for root, routes in (("/ocs/v2.php/cloud", self.account), ("/remote.php/webdav", self.files), (FILES, self.files),
                             (UPLOADS, self.upload), (COMMENTS, self.comment)):
            if (self.path + "/").startswith(root + "/"):
                return routes(root, self.path[len(root):].strip("/"))
        raise Refused(404)

    def answer(self, status, content=b"", *headers):
        if not self.is_whole:
            return  # Nobody is there any more.
        self.send_response(status)
        for header in headers:
            self.send_header(*header)
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        if self.command != "HEAD":
            self.wfile.write(content)

    def account(self, _, name):
        demand(self.headers.get("OCS-APIRequest") == "true", "not said to be a request of a program")
        capabilities = {"dav": {"chunking": "1.0"}, "files": {"versioning": State.has_versions, "comments": not State.is_mute},
                        "checksums": {"supportedTypes": ["SHA1"]}}
        data = {"user": {"id": USER, "display-name": "Ada L."}, "capabilities": {"capabilities": capabilities}}.get(name)
        self.answer(200, json.dumps({"ocs": {"data": data}}).encode(), ("Content-Type", "application/json"))

    # Files, as WebDAV has them, without locks.

    def files(self, root, name):
        if not self.is_whole:
            return None  # What broke off is no file.
        handlers = {"GET": self.get, "HEAD": self.get, "PUT": self.put, "DELETE": self.delete, "MKCOL": self.make_folder,
                    "MOVE": self.move, "COPY": self.move, "PROPPATCH": self.set_properties}
        if self.command == "PROPFIND":
            return self.list(root, name)
        if self.command not in handlers:
            raise Refused(501)
        return handlers[self.command](name)

    @staticmethod
    def file(name):
        if not State.entries.get(name):
            raise Refused(404)
        return State.entries[name]

    def get(self, name):
        file = self.file(name)
        self.answer(200, file.content, ("ETag", file.etag), ("Last-Modified", self.date_time_string(file.modified)))

    def put(self, name):
        there = State.entries.get(name)
        known = self.headers.get("If-Match")
        if (known and (not there or there.etag != known)) or (there and self.headers.get("If-None-Match") == "*"):
            raise Refused(412)
        self.keep(name, self.body)

    def keep(self, name, content):
        if name.rpartition("/")[0] not in State.entries:
            raise Refused(409)
        sum_told = self.headers.get("OC-Checksum")
        demand(sum_told in (None, "SHA1:" + hashlib.sha1(content).hexdigest()), "the checksum is another content's")
        there = State.entries.get(name)
        if there and State.has_versions:
            State.versions.setdefault(name, []).append(there.content.decode())
        file = State.entries[name] = File(b"?" + content[1:] if State.is_corrupt else content, there)
        self.answer(204 if there else 201, b"", ("OC-ETag", file.etag), *([("ETag", file.etag)] if self.command == "PUT" else []))

    def delete(self, name):
        if name not in State.entries:
            raise Refused(404)
        for path in [path for path in State.entries if (path + "/").startswith(name + "/")]:
            del State.entries[path]
        self.answer(204)

    def make_folder(self, name):
        if name in State.entries:
            raise Refused(405)
        State.entries[name] = None
        self.answer(201)

    def target(self):
        """The name of the file that the destination is."""
        url = urllib.parse.urlsplit(self.headers.get("Destination", ""))
        path = urllib.parse.unquote(url.path)
        demand(url.netloc in ("", self.headers["Host"]) and path.startswith(FILES + "/"), "no destination among the user's files")
        return path[len(FILES):].strip("/")

    def check_target(self, name):
        """Conditions about the destination, as RFC 4918 has them; If-Match is about what is moved."""
        there = State.entries.get(name)
        condition = re.fullmatch(r'<([^>]*)> \(\[([^\]]*)\]\)', self.headers.get("If", ""))
        demand(condition or "If" not in self.headers, "a condition that isn't about an ETag")
        if not State.is_forgetful:
            if there and self.headers.get("Overwrite", "T") == "F":
                raise Refused(412)
            if condition and (not there or there.etag != condition[2]):
                raise Refused(412)

    def move(self, name):
        file, target = self.file(name), self.target()
        self.check_target(target)
        if self.command == "MOVE":
            del State.entries[name]
        self.keep(target, file.content)

    def set_properties(self, name):
        file = self.file(name)
        answer = xml.Element(DAV + "multistatus")
        kept = [element for prop in xml.fromstring(self.body).iter(DAV + "prop") for element in prop]
        file.properties.update({element.tag: element.text for element in kept})
        self.respond(answer, self.path, {element.tag: None for element in kept})
        self.answer(207, xml.tostring(answer))

    def list(self, root, name):
        if name not in State.entries:
            raise Refused(404)
        answer = xml.Element(DAV + "multistatus")
        for path, file in State.entries.items():
            if path == name or (self.headers.get("Depth") == "1" and path and path.rpartition("/")[0] == name):
                properties = {DAV + "resourcetype": None if file else Nested(DAV + "collection")}
                if not file:
                    properties[DAV + "getetag"] = State.etag_of_folder(path)
                else:
                    properties |= {DAV + "getcontentlength": str(len(file.content)), DAV + "getetag": file.etag,
                                   DAV + "getlastmodified": self.date_time_string(file.modified), OWN + "fileid": file.id,
                                   OWN + "checksums": Nested(OWN + "checksum", "SHA1:" + hashlib.sha1(file.content).hexdigest())
                                   } | file.properties
                self.respond(answer, f"{root}/{path}", properties)
        self.answer(207, xml.tostring(answer), ("Content-Type", "application/xml"))

    @staticmethod
    def respond(answer, path, properties):
        response = xml.SubElement(answer, DAV + "response")
        xml.SubElement(response, DAV + "href").text = urllib.parse.quote(path)
        part = xml.SubElement(response, DAV + "propstat")
        prop = xml.SubElement(part, DAV + "prop")
        for tag, value in properties.items():
            element = xml.SubElement(prop, tag)
            if isinstance(value, Nested):
                xml.SubElement(element, value.tag).text = value.text
            else:
                element.text = value
        xml.SubElement(part, DAV + "status").text = "HTTP/1.1 200 OK"

    # Uploads in chunks.

    def upload(self, root, name):
        if State.now() < State.busy_until:
            raise Refused(503, "", ("Retry-After", self.date_time_string(State.busy_until)))
        target = self.target()  # Each request has to say it.
        name, _, chunk = name.partition("/")
        demand(name, "the folder of all uploads is no upload")
        if self.command == "MKCOL":
            demand(not chunk, "a folder in an upload")
            if name in State.uploads:
                raise Refused(405)
            State.uploads[name] = Upload(target)
            return self.answer(201)
        if name not in State.uploads:
            raise Refused(404)
        upload = State.uploads[name]
        demand(upload.destination == target, "another destination than the upload was begun for")
        if self.command == "PROPFIND":
            answer = xml.Element(DAV + "multistatus")
            self.respond(answer, f"{root}/{name}/", {DAV + "resourcetype": Nested(DAV + "collection")})
            for each in [*upload.chunks, ".file"]:
                size = len(upload.chunks.get(each, b""))
                self.respond(answer, f"{root}/{name}/{each}", {DAV + "getcontentlength": str(size)})
            return self.answer(207, xml.tostring(answer))
        if self.command == "DELETE":
            demand(not chunk, "a chunk goes with its upload")
            del State.uploads[name]
            return self.answer(204)
        if self.command == "PUT":
            return self.put_chunk(upload, chunk)
        demand(self.command == "MOVE" and chunk == ".file", "nothing that is done to an upload", 405)
        return self.assemble(name, upload, target)

    def total(self):
        demand(self.headers.get("OC-Total-Length", "").isdigit(), "not said how long it is in all")
        return int(self.headers["OC-Total-Length"])

    def put_chunk(self, upload, chunk):
        total = self.total()
        demand(re.fullmatch(r"0*\d{1,5}", chunk) and 1 <= int(chunk) <= 10000, "a chunk's name is a number from 1 to 10000")
        demand(len(self.body) <= min(MOST_CHUNK, total), "more than a chunk may have")
        demand("If-Match" not in self.headers and "If" not in self.headers, "a condition about what isn't there")
        if self.is_whole:
            upload.chunks[chunk] = self.body
        else:
            upload.chunks.setdefault(chunk, self.body)  # What came of one that broke off stays.
        self.answer(201)

    def assemble(self, name, upload, target):
        chunks = [content for _, content in sorted(upload.chunks.items(), key=lambda each: int(each[0]))]
        demand(all(len(chunk) >= LEAST_CHUNK for chunk in chunks[:-1]), "a chunk but for the last is smaller than 5 MB")
        content = b"".join(chunks)
        demand(len(content) == self.total(), "chunks are missing")
        if "If-Match" in self.headers:
            raise Refused(412)
        self.check_target(target)
        del State.uploads[name]
        self.keep(target, content)

    # Comments.

    def comment(self, root, name):
        if State.is_mute:
            raise Refused(404)
        ids = {file.id for file in State.entries.values() if file}
        if name not in ids:
            raise Refused(404)
        if self.command == "PROPFIND":
            answer = xml.Element(DAV + "multistatus")
            self.respond(answer, f"{root}/{name}", {DAV + "resourcetype": Nested(DAV + "collection")})
            for comment in State.comments.get(name, []):
                self.respond(answer, f"{root}/{name}/{comment['id']}",
                             {OWN + key: comment[key] for key in ("id", "actorId", "message", "verb")})
            return self.answer(207, xml.tostring(answer))
        demand(self.command == "POST", "nothing that is done to comments", 405)
        demand(self.headers.get("Content-Type", "").split(";")[0] == "application/json", "not JSON", 415)
        comment = json.loads(self.body)
        demand(comment.get("actorType") == "users" and comment.get("verb") == "comment", "no comment of a user")
        demand(0 < len(comment.get("message", "").strip()) and len(comment["message"]) <= LONGEST_COMMENT, "no message, or too long a one")
        comments = State.comments.setdefault(name, [])
        comments.append(comment | {"id": str(100 + sum(map(len, State.comments.values()))), "actorId": USER})
        return self.answer(201, b"", ("Content-Location", f"{root}/{name}/{comments[-1]['id']}"))

    def log_message(self, *_):
        pass


def obey(order, seconds=None):
    if order == "forgetful":
        State.is_forgetful = True
    elif order == "forgive":
        State.refusals.clear()
    elif order == "corrupt":
        State.is_corrupt = True
    elif order == "versions":
        State.has_versions = True
    elif order == "mute":
        State.is_mute = True
    elif order == "busy":
        State.busy_until = State.now() + int(seconds)
    elif order == "clock":
        State.offset = int(seconds)


def main():
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    print(f"http://127.0.0.1:{server.server_port}/", flush=True)
    for line in sys.stdin:
        with State.lock:
            obey(*line.split())
        print("done", flush=True)


if __name__ == "__main__":
    main()
