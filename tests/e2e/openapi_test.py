#!/usr/bin/env python3
"""Validates the answers that the tests of the host got against docs/openapi.json.

Usage: openapi_test.py OPENAPI DIRECTORY LEAST [PREFIX], with a file of answers, one a line, for each
process of the tests, whose name begins with PREFIX; without it, is a number. There must be LEAST
answers or more."""
import json
import os
import re
import sys

import jsonschema

# The host's gates judge a request before its resource is known; what is malformed has none.
GATES = {"400", "401", "403", "408", "413", "415", "421", "503"}
METHODS = {"GET", "HEAD", "POST", "PUT", "DELETE", "PATCH", "OPTIONS"}
# What the HTTP server library says itself, without the headers of the host.
SERVER = {"400", "408", "413", "414", "431", "500", "501", "505"}


class Interface:
    def __init__(self, file):
        with open(file, encoding="utf-8") as stream:
            self.document = json.load(stream)
        self.validators = {}
        self.templates = sorted(
            ((re.compile(re.sub(r"\{\w+\}", "(.+)", re.escape(path).replace(r"\{", "{").replace(r"\}", "}")) + "$",
                         re.DOTALL), path) for path in self.document["paths"]),
            key=lambda item: ("{" in item[1], -len(re.sub(r"\{\w+\}", "*", item[1]))))
        for name, schema in self.document["components"]["schemas"].items():
            jsonschema.Draft202012Validator.check_schema(schema)
            self.validators[name] = jsonschema.Draft202012Validator(
                {"$ref": f"#/components/schemas/{name}", "components": self.document["components"]})

    def find(self, path):
        for pattern, template in self.templates:
            if pattern.match(path):
                return self.document["paths"][template]
        return None

    def response(self, operation, status):
        answer = operation["responses"].get(status)
        if answer and "$ref" in answer:
            answer = self.document["components"]["responses"][answer["$ref"].rsplit("/", 1)[1]]
        return answer


def parse_head(head):
    lines = head.rstrip("\r\n").split("\r\n")
    headers = {}
    for line in lines[1:]:
        name, _, value = line.partition(":")
        headers[name.lower()] = value.strip()
    return lines[0].split(" ")[1], headers


def path_of(target):
    path = target.partition("?")[0]
    path = re.sub(r"^http://[^/]*", "", path, flags=re.IGNORECASE) or "/"
    return re.sub(r"%([0-9a-fA-F]{2})", lambda m: chr(int(m.group(1), 16)), path)


def check_content(interface, response, headers, body, is_head):
    kind = headers.get("content-type", "")
    content = response.get("content")
    if content is None:
        return "it has a body" if body else None
    if kind not in content:
        return f"its content is {kind!r}"
    for name, rule in response.get("headers", {}).items():
        value = headers.get(name.lower())
        if value is None and rule.get("required"):
            return f"it has no {name}"
        if value is not None and not re.search(rule["schema"]["pattern"], value):
            return f"its {name} is {value!r}"
    if is_head or body is None:
        return None
    schema = content[kind]["schema"]["$ref"].rsplit("/", 1)[1]
    value = body
    if kind.endswith("json"):
        try:
            value = json.loads(body)
        except ValueError as fault:
            return f"it is no JSON: {fault}"
    fault = next(interface.validators[schema].iter_errors(value), None)
    return None if fault is None else f"it is no {schema}: {fault.message}"


def check_refusal(interface, status, headers, body, is_head):
    """A refusal that belongs to no operation."""
    refusals = interface.document["components"]["responses"]
    response = refusals.get(f"Refusal{status}", refusals["Refusal400"])
    return check_content(interface, response, headers, body, is_head)


def check(interface, note):
    """What is wrong with an answer: a sentence, or nothing. The flag says whether it was looked at."""
    status, headers = parse_head(note["head"])
    body = note.get("body")
    if status == "100" or (status in SERVER and "x-content-type-options" not in headers):
        return None, False
    if headers.get("x-content-type-options") != "nosniff" or "cache-control" not in headers:
        return "a header that every answer has is missing", True
    parts = note["request"].split(" ")
    if len(parts) != 3 or parts[0] not in METHODS:
        return None, False  # a line that came in pieces, or is none
    method, target = parts[0], parts[1]
    is_head = method == "HEAD"
    path = path_of(target)
    resource = interface.find(path)
    operation = (resource or {}).get("get" if is_head else method.lower())
    if method == "OPTIONS" and status == "204":
        return (None if headers.get("allow", "").endswith("OPTIONS") else "it has no Allow"), True
    if operation is not None:
        response = interface.response(operation, status)
        if response is None:
            return "this status is not described", True
        return check_content(interface, response, headers, body, is_head), True
    if status == "405":
        allowed = headers.get("allow", "").split(", ")
        described = [name.upper() for name in resource or {}]
        expected = [name for one in described for name in ([one, "HEAD"] if one == "GET" else [one])]
        if sorted(allowed) != sorted(expected):
            return f"it allows {allowed}, and not {expected}", True
    elif status not in GATES and not (status == "404" and resource is None):
        return "there is no such resource or method", True
    return check_refusal(interface, status, headers, body, is_head), True


def main():
    interface = Interface(sys.argv[1])
    directory, least = sys.argv[2], int(sys.argv[3])
    names = re.compile((sys.argv[4] if len(sys.argv) > 4 else "") + "[0-9]+$")
    looked_at = faults = 0
    known = {}
    for name in sorted(filter(names.match, os.listdir(directory))):
        with open(os.path.join(directory, name), encoding="utf-8", newline="\n") as stream:
            for line in stream:
                if line in known:
                    continue
                known[line] = True
                note = json.loads(line)
                fault, was_looked_at = check(interface, note)
                looked_at += was_looked_at
                if fault:
                    faults += 1
                    print(f"{note['request']}: {note['head'].splitlines()[0]}: {fault}\n"
                          f"{str(note.get('body'))[:300]}")
    print(f"{looked_at} different answers were looked at, {faults} are not as described")
    if looked_at < least:
        print(f"there should be {least} or more")
    return 1 if faults or looked_at < least else 0


sys.exit(main())
