#!/usr/bin/python3
"""What a user does on the item service's page in a browser, beside the program under test.

    clicks.py LINK ITEM OTHER    opens the page by a link that signs in, and has the program sign in again, open the design of an item it finds,
                                 insert another one's into it, label that version, and create an item; also comments, links and bookmarks

Prints what the page says each time. Exits with 77 if no browser is installed, and says what is missing.
"""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[3] / "Services/Itemhub"))
import browser  # noqa: E402


def main(link, item, other):
    if absent := browser.missing():
        print(absent)
        return 77
    page = browser.Browser()
    try:
        page.open(link)
        page.find("h1", "Home")
        here = page.driver.current_url.split("#")[0]

        def asks(button, *inputs):
            """Has the program do something, after filling in the dialog for it."""
            page.click("main button", button)
            for name, value, choice in inputs:
                page.type(f"dialog [name={name}]", value)
                page.click("dialog button", choice)
            page.find(".program p", "Done in Quillet.")
            print(button, flush=True)

        asks("Sign Quillet In Anew")
        page.type("header [name=q]", "Car")
        page.click("header form button", "Search")
        page.click(f".card a[href='#/items/{item}']")
        page.find("p.small", f"Item {item} ")
        asks("Open in Quillet")
        page.open(f"{here}#/items/{other}")
        page.find("p.small", f"Item {other} ")
        asks("Insert into the Shown Design")
        page.open(f"{here}#/items/{item}")
        page.find("p.small", f"Item {item} ")
        asks("Mark a Version...", ("label", "With a wheel", "Save and Mark"))
        page.find(".versions .label", "With a wheel")
        page.type("section textarea", "It turns.")
        page.click("section form button", "Send")
        page.find(".comments .written", "It turns.")
        page.click("button", "Link an Item...")
        page.type("dialog [name=other]", other)
        page.click("dialog button", "Link")
        page.find(f".card a[href='#/items/{other}']")
        page.click("main .head .star")
        page.click("p.small a")
        page.click("button", "New Item")
        page.type("dialog [name=caption]", "By a click")
        page.click("dialog button", "Create with a Design in Quillet")
        page.find(".program p", "Done in Quillet.")
        page.find(".card", "By a click")
        print("New Item", flush=True)
        page.click("header a.name")
        page.find(".card .caption", "Car")
        page.click("header button", "Sign Out")
        page.find("[name=password]")
    finally:
        page.close()
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
