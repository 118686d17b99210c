"""A browser without a screen, as somebody who may do nothing in particular, with real clicks and keys."""

import os
import pathlib
import shutil
import tempfile
import unittest

import service

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service as Driver
    from selenium.webdriver.common.by import By
    from selenium.webdriver.support.ui import WebDriverWait
except ImportError:
    webdriver = None

PATIENCE = 90  # Seconds, on a machine that has much to do.


def missing():
    """What isn't installed for it; empty if nothing."""
    return ", ".join(name for name, there in [("python3-selenium", webdriver), ("chromium", shutil.which("chromium")),
                                              ("chromium-driver", shutil.which("chromedriver"))] if not there)


def needed(case):
    """Leaves the test case, as skipped, where the browser isn't installed; it must be where servers are required."""
    if absent := missing():
        if os.environ.get("QUILLET_SERVERS") == "required":
            raise AssertionError(f"not installed: {absent}")
        raise unittest.SkipTest(f"NOTICE: not installed: {absent}")


class Browser:
    def __init__(self, width=1280, height=860, language="en"):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="browser-"))
        driver = self.home / "driver"
        # The driver starts the browser, so that both are nobody's.
        plain = " ".join(service.PLAIN)
        driver.write_text(f'#!/bin/sh\nHOME={self.home} TMPDIR={self.home} exec {plain} "$(command -v chromedriver)" "$@"\n')
        driver.chmod(0o755)
        self.home.chmod(0o755)
        if service.PLAIN:
            os.chown(self.home, service.NOBODY, service.NOBODY)
        options = webdriver.ChromeOptions()
        options.binary_location = shutil.which("chromium")
        # Containers forbid what its own walls are made of; it meets no pages but those of the test.
        for word in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run", "--no-proxy-server",
                     f"--window-size={width},{height}", f"--lang={language}", f"--user-data-dir={self.home}/profile"):
            options.add_argument(word)
        options.add_experimental_option("prefs", {"intl.accept_languages": language})
        if width < 500:
            options.add_experimental_option("mobileEmulation", {"deviceMetrics": {"width": width, "height": height, "pixelRatio": 2.0}})
        self.driver = webdriver.Chrome(service=Driver(str(driver)), options=options)
        self.driver.set_page_load_timeout(PATIENCE)

    def close(self):
        self.driver.quit()
        shutil.rmtree(self.home, ignore_errors=True)

    def open(self, address):
        self.driver.get(address)

    def until(self, what):
        """Waits for something to hold, and gives it."""
        return WebDriverWait(self.driver, PATIENCE, ignored_exceptions=(Exception,)).until(lambda _: what())

    def all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def find(self, selector, text=None):
        """What is shown and has that text, as soon as it is there."""
        return self.until(lambda: next((each for each in self.all(selector) if each.is_displayed()
                                        and (text is None or text in (each.text or each.get_attribute("aria-label") or ""))), None))

    def click(self, selector, text=None):
        def clicked():
            self.find(selector, text).click()
            return True
        self.until(clicked)

    def type(self, selector, text):
        self.find(selector).send_keys(text)

    def run(self, script, *values):
        return self.driver.execute_script(script, *values)

    def text(self):
        return self.driver.find_element(By.CSS_SELECTOR, "body").text

    def shows(self, text):
        return self.until(lambda: text in self.text())

    def sign_in(self, address, customer, account, password):
        self.open(address)
        for name, value in (("customer", customer), ("account", account), ("password", password)):
            self.type(f"[name={name}]", value)
        self.click("button")
        self.find("header")
