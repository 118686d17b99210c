// The dashboard: what the address names behind "#", shown under a head that stays.

import { doing, button, element, notices, replace, tell, tellFailure, text } from "./dom.js";
import { oneItem } from "./item.js";
import { found, home, oneWorkspace } from "./lists.js";
import { ownAccount, people } from "./people.js";
import { ask, listen, session, workspaces } from "./service.js";

const routes = [
    [/^#\/workspaces\/(\d+)$/, id => oneWorkspace(Number(id))],
    [/^#\/workspaces\/(\d+)\/people$/, id => people(Number(id), () => show(false))],
    [/^#\/account$/, () => ownAccount(() => show(false))],
    [/^#\/items\/(\d+)$/, id => oneItem(Number(id))],
    [/^#\/search\/(.*)$/, query => found(decodeURIComponent(query))],
    [/^/, () => home()],
];

const typed = element("input", {
    type: "search", name: "q", placeholder: text("PageSearch"), "aria-label": text("PageSearch"), autocomplete: "off", maxlength: 100,
});
const searching = element("form", {
    role: "search",
    onsubmit: event => {
        event.preventDefault();
        location.hash = `#/search/${encodeURIComponent(typed.value)}`;
    },
}, typed, element("button", {}, text("PageSearchButton")));

const places = element("nav", { "aria-label": text("PageWorkspaces") });
const main = element("main", { id: "main", tabindex: "-1" });

document.body.append(
    button(text("PageSkip"), () => main.focus(), { class: "skip" }),
    element("header", {},
        element("a", { class: "name", href: "#/" }, element("img", { src: "dashboard/files/icon.svg", alt: "", width: 28, height: 28 }), "Itemhub"),
        searching,
        element("div", { class: "account" }, element("a", { href: "#/account" }, element("bdi", {}, session.account)),
            button(text("PageSignOut"), doing(async () => {
                await ask("POST", "dashboard/end");
                location.reload();
            })))),
    element("div", { class: "columns" }, places, element("div", { class: "content" }, notices, main)));

let shown = { isAbout: () => false }, asked = 0;

async function showPlaces() {
    const current = shown.place ? `#/workspaces/${shown.place}` : location.hash || "#/";
    places.replaceChildren(element("ul", { role: "list" },
        ...[{ href: "#/", name: text("PageHome") },
            ...(await workspaces()).map(each => ({ href: `#/workspaces/${each.id}`, name: each.name }))]
            .map(({ href, name }) => element("li", {}, element("a", {
                href, "aria-current": href === current ? "page" : null,
            }, element("bdi", {}, name))))));
}

/** Shows what the address names. After a step of the reader's, the heading has the keyboard. */
async function show(isStep) {
    const number = ++asked;
    main.ariaBusy = "true";
    let view;
    try {
        const [pattern, make] = routes.find(([each]) => each.test(location.hash));
        view = await make(...location.hash.match(pattern).slice(1));
    } catch (error) {
        view = { title: text("PageNotShown"), content: [element("p", {}, error.message)], isAbout: () => false };
    }
    if (number !== asked)
        return; // The reader has gone on meanwhile.
    const heading = element("h1", { tabindex: "-1" }, element("bdi", {}, view.title));
    shown = view;
    replace(main, element("div", { class: "head" }, heading, ...(view.actions ?? [])), ...view.content);
    main.ariaBusy = "false";
    document.title = `${view.title} – Itemhub`;
    if (isStep) {
        scrollTo(0, 0);
        heading.focus({ preventScroll: true });
    }
    showPlaces().catch(tellFailure);
}

let later = 0;

// Several things that happen at once are shown at once.
listen(event => {
    if (event.kind !== "seen" && !shown.isAbout(event))
        return;
    clearTimeout(later);
    later = setTimeout(() => show(false), 200);
});
addEventListener("hashchange", () => {
    tell("");
    show(true);
});
show(false);
