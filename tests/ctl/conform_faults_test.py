"""kioctl conform against routers with one fault each, which it must catch by name."""

import itertools

from conform_support import *


def stored_anyway(bench):
    """A router that keeps a value of a document that it refuses."""

    def change(method, path, status, headers, body):
        if (method, path) == ("POST", "/settings") and b"<RssSetResult>0<" not in body:
            bench.set_node("/sys/friendlyname", "Kept")
        return status, headers, body

    return on_answer(change)


def never_lapses(bench):
    """A router that lets a client in for ever that has logged in once."""
    logged_in = []

    def fault(method, path, headers, body, pass_on):
        answer = pass_on(method, path, headers, body)
        if path == "/login" and answer[0] == 200:
            logged_in.append(True)
        if path == "/logout":
            logged_in.clear()
        elif answer[0] == 401 and path != "/login" and logged_in:
            bench.log_in(bench.url)
            answer = pass_on(method, path, headers, body)
        return answer

    return fault


def any_key(bench):
    """A router to which every key is a good one."""

    def fault(method, path, headers, body, pass_on):
        if path == "/login":
            return bench.log_in(bench.url)
        return pass_on(method, path, headers, body)

    return fault


def early_confirmation(bench):
    """A router that lets a login from before the change confirm it."""

    def fault(method, path, headers, body, pass_on):
        if (method, path) == ("POST", "/settings/confirm"):
            bench.log_in(bench.url)
        return pass_on(method, path, headers, body)

    return fault


def reversed_batch(method, path, headers, body, pass_on):
    if (method, path) == ("POST", "/vars"):
        body = b"&".join(reversed(body.split(b"&")))
    return pass_on(method, path, headers, body)


def dry_run_that_stores(method, path, headers, body, pass_on):
    answer = pass_on(method, path, headers, body)
    if path == "/settings?dry-run=1" and b"Conform-Dry" in body:
        pass_on(method, "/settings", headers, body)
    return answer


def idle_logout(method, path, headers, body, pass_on):
    return (200, {"Content-Type": "text/plain"}, b"logged out\n") if path == "/logout" else \
        pass_on(method, path, headers, body)


def cut_result(_, path, status, headers, body):
    if path == "/result":
        return status, {**headers, "Content-Length": str(len(body)), "X-Cut": "1"}, body[:-9]
    return status, headers, body


def another_boot():
    count = itertools.count()
    return on_answer(lambda _, path, status, headers, body: (
        status, headers, re.sub(rb'"bootId": "[^"]*"', b'"bootId": "%d"' % next(count), body)
        if path == "/device" else body))


def cut_to_64_kib(method, path, headers, body, pass_on):
    return pass_on(method, path, headers, body[:65536])


def ignored_password(method, path, headers, body, pass_on):
    """A router that says that it takes any network name, and keeps the old one."""
    if path == "/settings":
        body = re.sub(rb"<DeviceName>[^<]*<", b"<DeviceName>Home router<", body)
    return pass_on(method, path, headers, body)


class Faults(Conform):
    # What is wrong, and the cases that must tell, of those that are run.
    FAULTS = {
        "a wrong code": (
            lambda _: text_of("/settings", "<RssSetResult>3<", "<RssSetResult>10<"),
            ["codes.no-such-mode", "codes.no-such-channel"]),
        "a fault without its element": (
            lambda _: text_of("/settings", "<RssSetMsg>.*</RssSetMsg>", "<RssSetMsg></RssSetMsg>"),
            ["codes.no-name"]),
        "a value stored on refusal": (stored_anyway, ["codes.no-such-mode", "codes.nothing-is-half-done"]),
        "a value that is not stored": (
            lambda _: ignored_password, ["documents.name-is-applied", "backup.hash-follows-the-settings"]),
        "a missing wait": (
            lambda _: text_of("/settings", r"<RssGetWaitSec>\d+<", "<RssGetWaitSec>0<"),
            ["waits.wait-is-as-foretold"]),
        "a forecast of another wait": (
            lambda _: text_of("/settings.*", r'"wait": \d+', '"wait": 3'),
            ["waits.wait-is-that-of-the-actions", "waits.wait-is-as-foretold", "waits.radio-takes-its-time"]),
        "a state that is always ready": (
            lambda _: text_of("/device", '"state": "busy"', '"state": "ready"'), ["waits.commit-is-deferred"]),
        "a login that never lapses": (never_lapses, ["login.lapses", "login.device-keeps-nobody"]),
        "a key that need not fit": (any_key, ["login.wrong-key-is-refused", "login.old-key-is-refused"]),
        "a logout that does not end the login": (lambda _: idle_logout, ["login.logout-ends-it"]),
        "wrong keys without end": (
            lambda _: status_of("/login", 429, 401), ["login.wrong-keys-close-the-way"]),
        "a cut body": (lambda _: on_answer(cut_result), ["documents.result-is-kept"]),
        "a cut value": (
            lambda _: text_of("/vars/rss_Wl2_WirelessName", "HomeNet", "HomeNe"), ["variables.each-is-read"]),
        "a wrong content type": (
            lambda _: header_of("/result", "Content-Type", "text/html"), ["documents.result-is-kept"]),
        "an ETag that never changes": (
            lambda _: header_of("/vars", "ETag", '"1"'), ["interface.tag-follows-the-list"]),
        "a 304 that is never given": (
            lambda _: without_header("If-None-Match"),
            ["interface.description-has-a-tag", "interface.variables-have-a-tag"]),
        "a batch in another order": (lambda _: reversed_batch, ["batches.later-pair-wins"]),
        "200 for an unknown variable": (
            lambda _: status_of("/vars/rss_NoSuchThing", 404, 200), ["variables.unknown-is-absent"]),
        "a dry run that stores": (lambda _: dry_run_that_stores, ["documents.dry-run-leaves-all"]),
        "a missing Retry-After": (
            lambda _: header_of("/settings", "Retry-After"), ["confirm.others-are-in-the-way"]),
        "a confirmation from before": (early_confirmation, ["confirm.later-login-confirms"]),
        "settings that do not wait": (
            lambda _: for_path(r"\?confirm-within=\d+", ""),
            ["confirm.pending-is-told", "confirm.goes-back", "confirm.taken-back"]),
        "a bootId that changes at each request": (lambda _: another_boot(), ["device.boot-id-stays"]),
        "an error without its text": (
            lambda _: text_of("/nothing-of-that-name", "(?s).+", ""),
            ["interface.nothing-is-absent", "errors.are-lines", "errors.problem-details"]),
        "a problem without its rule": (
            lambda _: text_of("/vars/.*", '"rule"', '"role"'), ["errors.refused-value-tells-why"]),
        "secrets in a backup": (lambda _: for_path("^/backup$", "/backup?secrets=1"), ["backup.no-secrets-unasked"]),
        "an apply without its id": (
            lambda _: header_of("/settings", "Kio-Apply-Id"), ["documents.name-is-applied"]),
        "If-Match that is not looked at": (
            lambda _: without_header("If-Match"), ["documents.if-match-guards", "batches.if-match-guards"]),
        "a result that stays": (
            lambda _: text_of("/result", "<RssSetResult>2<", "<RssSetResult>0<"),
            ["documents.refusal-is-kept", "batches.writes-a-result"]),
        "documents without a limit": (lambda _: cut_to_64_kib, ["limits.documents-of-64-kib"]),
        "OPTIONS without its methods": (
            lambda _: header_of("/device", "Allow", "POST"), ["interface.options-tells-methods"]),
        "an upgrade that skips a step": (
            lambda _: text_of("/firmware/2", "<result>0<", "<result>3<"), ["firmware.steps-have-their-place"]),
    }

    def test_without_a_fault_all_of_these_cases_pass(self):
        cases = sorted({case for _, told in self.FAULTS.values() for case in told})
        result = self.check(self.planted(none, *cases), err="the router conforms: ")
        self.assertNotIn("# SKIP", result.out)

    def test_each_fault_is_caught_by_name(self):
        for what, (plant, cases) in self.FAULTS.items():
            with self.subTest(fault=what):
                result = self.planted(plant(self.bench), *cases)
                self.assertEqual(sorted(failed(result)), sorted(cases), result.out + result.err)
                self.check(result, 1, err="the router does not conform")

if __name__ == "__main__":
    unittest.main()
