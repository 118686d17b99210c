#!/usr/bin/python3
"""What a person does on the item service's page in a browser, beside a program that is tested.

    clicks.py LINK ITEM OTHER    opens the page by a link that signs in, and has the program open an item's design, insert another one's
                                 into it, and make an item

Prints what the page says each time. Ends with 77 where no browser is installed, and says what is missing.
"""

import pathlib
import sys
import urllib.parse

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
        for shown, button in ((item, "Open in Quillet"), (other, "Insert into the Shown Design")):
            page.open(urllib.parse.urljoin(page.driver.current_url, f"#/items/{shown}"))
            page.find("p.small", f"Item {shown} ")
            page.click("button", button)
            page.find(".program p", "Done in Quillet.")
            print(button, flush=True)
        page.click("p.small a")
        page.click("button", "New Item")
        page.type("dialog [name=caption]", "By a click")
        page.click("dialog button", "Create with a Design in Quillet")
        page.find(".program p", "Done in Quillet.")
        page.find(".card", "By a click")
        print("New Item", flush=True)
    finally:
        page.close()
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
