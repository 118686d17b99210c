"""The dashboard in a browser: what a person does there by clicks and keys, and what another site's page can't."""

import http.server
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import threading

import browser
import service
from browser import Browser
from service import PASSWORD, PNG, ServiceTest, package

HOSTILE = "<img src=x onerror=\"document.title='taken'\"> \u202e" + "W" * 180

# Tries what a page of somebody else's can; what it got stands in the window's "got".
ATTACK = """<!DOCTYPE html><title>other</title><body><script>
const target = "TARGET", got = [];
const tries = [
    fetch(target + "/session", {credentials: "include"}).then(r => r.text()),
    fetch(target + "/dashboard", {credentials: "include"}).then(r => r.text()),
    fetch(target + "/session", {credentials: "include", mode: "no-cors"}).then(r => r.text()).then(t => { if (t) throw 0; }),
    fetch(target + "/workspaces/1/items", {method: "POST", credentials: "include", body: '{"caption":"Stolen"}',
          headers: {"Content-Type": "application/json", "X-CSRF-Token": "x"}}).then(r => r.text()),
    fetch(target + "/program/requests", {method: "POST", credentials: "include", mode: "no-cors",
          body: '{"name":"ExitApplicationCommand","args":{}}'}).then(r => r.text()),
    new Promise((good, bad) => { const i = new Image(); i.onload = () => good("image"); i.onerror = bad; i.src = target + "/items/1/picture"; }),
    new Promise((good, bad) => { const s = document.createElement("script"); s.onload = () => good("script"); s.onerror = bad;
                                 s.src = target + "/session"; document.body.append(s); }),
    new Promise((good, bad) => { const e = new EventSource(target + "/events?after=0", {withCredentials: true});
                                 e.onopen = () => good("events"); e.onerror = bad; }),
    new Promise((good, bad) => { const f = document.createElement("iframe"); f.src = target + "/dashboard";
                                 f.onload = () => { try { good(f.contentDocument.body.innerText); } catch { bad(); } }; document.body.append(f); }),
];
for (const [path, type] of [["/workspaces/1/items", "text/plain"], ["/dashboard/end", "text/plain"], ["/dashboard", "application/x-www-form-urlencoded"]]) {
    const form = document.createElement("form"), frame = document.createElement("iframe");
    frame.name = "f" + path;
    Object.assign(form, {method: "POST", action: target + path, enctype: type, target: frame.name});
    const field = document.createElement("input");
    field.name = '{"caption":"Stolen","description":"'; field.value = '"}';
    form.append(field); document.body.append(frame, form); form.submit();
}
Promise.allSettled(tries).then(all => {
    for (const each of all) if (each.status === "fulfilled" && each.value) got.push(String(each.value));
    setTimeout(() => { window.got = got; }, 1000);
});
</script>"""


class Other(http.server.BaseHTTPRequestHandler):
    """Another site, which notes what cookies reach it."""
    cookies = []
    page = ""

    def do_GET(self):
        self.cookies.append(self.headers.get("Cookie"))
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.end_headers()
        self.wfile.write(self.page.encode())

    def log_message(self, *_):
        pass


class BrowserTest(ServiceTest):
    @classmethod
    def setUpClass(cls):
        browser.needed(cls)
        super().setUpClass()
        cls.address = f"http://127.0.0.1:{cls.service.port}/dashboard"

    def setUp(self):
        self.reconnect()

    def reconnect(self):
        """The service ends a connection on which nothing comes for as long as browsers may take."""
        self.boss = self.service.client(self.boss.token)

    def browser(self, **more):
        made = Browser(**more)
        self.addCleanup(made.close)
        return made

    def other(self):
        Other.cookies.clear()
        made = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Other)
        threading.Thread(target=made.serve_forever, daemon=True).start()
        self.addCleanup(made.server_close)
        self.addCleanup(made.shutdown)
        return made

    def link(self):
        self.reconnect()
        return self.boss("POST", "/dashboard/links").json["url"]

    def test_a_person_finds_makes_comments_and_marks_by_clicks_and_keys(self):
        drawn = self.item("Gear housing")
        self.attachment(package(PNG), drawn, "Gear.vlra")
        page = self.browser()
        page.sign_in(self.address, "acme", "boss", PASSWORD)
        page.click("nav a", "Designs")
        page.click("button", "New Item")
        page.type("dialog [name=caption]", "Made by hand")
        page.type("dialog [name=description]", "For <b>trying</b>")
        page.click("dialog button", "Create")
        page.find("h1", "Made by hand")
        page.shows("For <b>trying</b>")
        page.type("section textarea", "Well done\nindeed")
        page.click("section form button")
        page.shows("Well done\nindeed")
        page.click("button.star")
        page.find("button.star[aria-pressed=true]")
        page.click("button", "Link an Item")
        page.type("dialog [name=other]", f"{drawn}\ue007")
        page.find(".card", "Gear housing")
        page.click("button.remove[aria-label*='link']")
        page.click("dialog button", "Remove")
        page.shows("The link to Gear housing was removed.")
        page.find("section p", "It links to no others.")
        self.boss("POST", f"/items/{drawn}/comments", {"body": "Of the drawing"})
        made = self.boss("GET", "/search?q=made").json["items"][0]
        self.assertEqual((made["caption"], made["favourite"]), ("Made by hand", True))
        self.assertEqual(self.boss("GET", f"/items/{made['id']}/comments").json["comments"][0]["body"], "Well done\nindeed")

        page.click("button.remove[aria-label*='comment']")
        page.click("dialog button", "Cancel")
        page.click("button.remove[aria-label*='comment']")
        page.click("dialog button", "Remove")
        page.shows("Nobody has commented on it.")
        self.assertEqual(self.boss("GET", f"/items/{made['id']}/comments").json["comments"], [])

        # The last changed one comes first; another order is remembered.
        page.click("nav a", "Designs")
        captions = lambda: [each.text for each in page.all(".card .caption")]
        page.until(lambda: captions()[:2] == ["Made by hand", "Gear housing"])
        self.attachment(b"", drawn)
        page.until(lambda: captions()[:2] == ["Gear housing", "Made by hand"])
        page.click("[name=order] option[value=name]")
        page.until(lambda: captions() == sorted(captions(), key=str.lower) and len(captions()) > 1)
        page.driver.refresh()
        page.until(lambda: page.run("return document.querySelector('[name=order]').value") == "name")

        # By the keyboard alone: the first key leads past the head, a search ends with Enter, and its list follows.
        page.open(self.address)
        page.find("h1", "Home")
        page.run("document.activeElement.blur()")
        page.type("body", "\ue004")
        self.assertEqual(page.run("return document.activeElement.className"), "skip")
        page.driver.switch_to.active_element.send_keys("\ue007")
        self.assertEqual(page.run("return document.activeElement.id"), "main")
        page.type("[name=q]", "gear\ue007")
        page.find("h1", "gear")
        page.until(lambda: page.run("return document.activeElement.tagName") == "H1")
        page.driver.switch_to.active_element.send_keys("\ue004")
        page.driver.switch_to.active_element.send_keys("\ue007")
        page.find("h1", "Gear housing")
        page.until(lambda: page.run("return [...document.querySelectorAll('.versions img, .overview img')].length === 2 && "
                                    "[...document.images].every(each => each.complete && each.naturalWidth > 0)"))

        # What others say appears, and what is being typed stays.
        page.type("section textarea", "Half a sent")
        self.boss("POST", f"/items/{drawn}/comments", {"body": "From somebody else"})
        page.shows("From somebody else")
        self.assertEqual(page.run("return [document.activeElement.tagName, document.activeElement.value]"), ["TEXTAREA", "Half a sent"])
        page.click("header button", "Sign Out")
        page.find("[name=password]")
        page.driver.back()
        page.find("[name=password]")

    def test_an_administrator_invites_gives_roles_and_reads_what_happened(self):
        page = self.browser()
        page.sign_in(self.address, "acme", "boss", PASSWORD)
        page.open(f"{self.address}#/workspaces/{self.workspace}/people")
        page.find("h1", "People of Designs")
        page.click("button", "Invite...")
        page.type("dialog [name=label]", "Grace")
        page.click("dialog [name=role] option[value=writer]")
        page.click("dialog button", "Make a Link")
        link = page.find("input.link").get_attribute("value")
        guest = self.browser(language="de")
        guest.open(link)
        guest.find("h1", "Beitreten")
        for name, value in (("account", "grace"), ("password", PASSWORD)):
            guest.type(f"[name={name}]", value)
        guest.click("button")
        guest.find("nav a", "Designs").click()
        guest.find("button", "Neues Element")
        self.assertFalse(guest.all("a.button[href$='people']"))
        # What she may do changes while she looks, and the page of who changes it follows.
        page.find("select[aria-label='Role of grace']")
        page.click("select[aria-label='Role of grace'] option[value=reader]")
        page.shows("The role of grace was changed.")
        guest.driver.refresh()
        guest.find("h1", "Designs")
        self.assertFalse([each for each in guest.all("main button") if "Neues Element" in each.text])
        page.click("header .account a")
        page.find("td", "invitation made")
        # A team, of which she is one; what it may do here she may, too.
        page.click("button", "New Team...")
        page.type("dialog [name=name]", "Pumps")
        page.click("dialog button", "Create")
        page.type("input[aria-label='Name of an account for the team Pumps']", "grace")
        page.click(".team form button", "Add")
        page.find(".team .members li", "grace")
        page.open(f"{self.address}#/workspaces/{self.workspace}/people")
        page.click("select[aria-label='Role of Pumps'] option[value=writer]")
        page.shows("The role of Pumps was changed.")
        page.find("li .small", "In the team Pumps")
        guest.driver.refresh()
        guest.find("button", "Neues Element")
        page.click("header .account a")
        page.click("button[aria-label='Remove grace from the team Pumps']")
        page.find(".team h3", "Pumps")
        guest.driver.refresh()
        guest.find("h1", "Designs")
        self.assertFalse([each for each in guest.all("main button") if "Neues Element" in each.text])
        page.click("button[aria-label='Disable grace']")
        page.click("dialog button", "Disable")
        page.find("button[aria-label='Enable grace']")
        guest.driver.refresh()
        guest.find("[name=password]")
        # A session that a program's link has begun manages nobody.
        page.open(self.link())
        page.find("h1", "Home")
        page.click("header .account a")
        page.shows("Sign out and in again with your password")

    def test_a_telephone_has_room_for_whatever_others_call_things(self):
        item = self.item(HOSTILE, description=HOSTILE)
        self.boss("PUT", f"/favourites/{item}")
        self.boss("POST", f"/items/{item}/comments", {"body": HOSTILE})
        self.attachment(package(PNG), item, "W" * 200 + ".vlra")
        page = self.browser(width=360, height=740, language="de")
        page.open(self.link())
        for place in ("#/", f"#/workspaces/{self.workspace}", f"#/items/{item}", "#/search/img"):
            page.open(self.address + place)
            page.until(lambda: "onerror" in page.text())
            self.assertLessEqual(page.run("return document.documentElement.scrollWidth"), 360, place)
        self.service.member("acme", HOSTILE.replace("\u202e", "")[:120], "reader")
        page.click("header button", "Abmelden")
        page.sign_in(self.address, "acme", "boss", PASSWORD)
        for place in ("#/account", f"#/workspaces/{self.workspace}/people"):
            page.open(self.address + place)
            page.until(lambda: "onerror" in page.text())
            self.assertLessEqual(page.run("return document.documentElement.scrollWidth"), 360, place)
        page.open(f"{self.address}#/search/img")
        self.assertEqual(page.run("return document.querySelectorAll('img[src=x]').length"), 0)
        self.assertNotIn("taken", page.driver.title.split(" ")[0])
        page.shows("Gefunden")

    def test_where_no_program_runs_the_page_offers_to_start_one(self):
        item = self.item("Wheel")
        self.attachment(package(PNG), item, "Wheel.vlra")
        page = self.browser()
        page.open(self.link())
        page.open(f"{self.address}#/items/{item}")
        page.click("button", "Open in Quillet")
        link = page.find("a[href^='quillet:']", "Start Quillet").get_attribute("href")
        taken = self.boss("POST", "/program/tickets", {"ticket": link.removeprefix("quillet:ticket/")}).json
        self.assertEqual((taken["name"], list(taken["args"])), ("ItemhubOpenAttachmentCommand", ["fileUri"]))
        page.shows("Look at Quillet")
        self.boss("PUT", f"/program/requests/{taken['id']}", {"state": "failed", "detail": "It is <i>full</i>."})
        page.shows("It is <i>full</i>.")
        self.assertFalse(any(each.is_displayed() for each in page.all("a[href^='quillet:']")))

    def test_another_sites_page_reads_nothing_and_changes_nothing(self):
        item = self.item("Mine")
        self.attachment(package(PNG), item)
        Other.page = ATTACK.replace("TARGET", self.address.removesuffix("/dashboard"))
        other = self.other()
        page = self.browser()
        page.open(self.link())
        page.find("h1", "Home")
        before = self.boss("GET", f"/workspaces/{self.workspace}/items?limit=500").json
        after = self.boss("GET", "/events?after=now").json["next"]
        # Another site, and another origin of the same site, which browsers tell less apart.
        for host in ("localhost", "127.0.0.1"):
            page.open(f"http://{host}:{other.server_port}/")
            page.until(lambda: page.run("return !!window.got"))
            self.assertEqual(page.run("return window.got"), [])
        self.assertEqual(self.boss("GET", f"/workspaces/{self.workspace}/items?limit=500").json, before)
        self.assertEqual(self.boss("GET", f"/events?after={after}").json["events"], [])
        page.open(self.address)
        page.find("h1", "Home")  # The session wasn't ended either.

    def test_the_session_of_a_programs_own_service_reaches_no_other_server_of_the_machine(self):
        folder = pathlib.Path(tempfile.mkdtemp(prefix="itemhub-"))
        self.addCleanup(shutil.rmtree, folder)
        if service.PLAIN:
            os.chown(folder, service.NOBODY, service.NOBODY)
        process = subprocess.Popen([*service.PLAIN, service.PROGRAM, "--local", folder / "profile"], stdout=subprocess.PIPE)
        self.addCleanup(lambda: (process.kill(), process.wait(), process.stdout.close()))
        told = json.loads(process.stdout.readline())
        client = service.Client(int(told["url"].rsplit(":", 1)[1]), told["token"], told["customer"])
        page = self.browser()
        page.open(client("POST", "/dashboard/links").json["url"])
        page.find("nav a", "Designs")
        other = self.other()
        for host in ("localhost", "127.0.0.1"):
            page.open(f"http://{host}:{other.server_port}/")
        self.assertEqual([cookie for cookie in Other.cookies if cookie], [])


if __name__ == "__main__":
    service.main()
