// Lists of items: the favourites, a workspace, what a search found.

import { ask as askPerson, button, doing, element, keptPlace, picture, section, tell, text, time } from "./dom.js";
import { programPart } from "./program.js";
import { ask, make, mayAdminister, mayWrite, session, workspace, workspaces } from "./service.js";

/** A star that says whether an item is a favourite, and changes that. */
export function star(item) {
    const shown = button("★", doing(async () => {
        const on = shown.ariaPressed !== "true";
        await ask(on ? "PUT" : "DELETE", `favourites/${item.id}`);
        shown.ariaPressed = on;
        tell(text(on ? "PageStarred" : "PageUnstarred", item.caption));
    }), { class: "star", "aria-pressed": String(item.favourite), "aria-label": text("PageFavourite", item.caption) });
    return shown;
}

function card(item, more = null) {
    return element("li", { class: "card" },
        element("a", { href: `#/items/${item.id}` },
            picture(`items/${item.id}/picture`, "wide"),
            element("span", { class: "caption" }, element("bdi", {}, item.caption)),
            element("span", { class: "small" }, element("bdi", {}, item.createdBy), " · ", time(item.changedAt))),
        star(item), more);
}

/** @param more what else there is to do with each item; nothing if it isn't given */
export function cards(items, whenEmpty, more = () => null) {
    return items.length === 0 ? element("p", { class: "small" }, whenEmpty)
        : element("ul", { class: "cards", role: "list" }, ...items.map(item => card(item, more(item))));
}

const signingIn = programPart(); // The program that gets a new token.

export async function home() {
    const [places, favourites] = await Promise.all([workspaces(true), ask("GET", "favourites")]);
    const list = element("ul", { class: "places", role: "list" }, ...places.map(place =>
        element("li", {}, element("a", { href: `#/workspaces/${place.id}` }, element("bdi", {}, place.name)),
            element("span", { class: "small" }, text(`PageRole_${place.role}`)))));
    return {
        title: text("PageHome"),
        content: [
            section(text("PageFavourites"), cards(favourites.items, text("PageNoFavourites"))),
            section(text("PageWorkspaces"), places.length > 0 ? list : element("p", { class: "small" }, text("PageNoWorkspaces"))),
            session.own ? "" : section("Quillet", element("p", { class: "small" }, text("PageTokenWhy")),
                element("p", { class: "below" }, button(text("PageToken"), doing(() =>
                    signingIn.request("ItemhubAuthenticateWithTokenCommand", {})))), keptPlace(signingIn)),
        ],
        isAbout: event => event.kind.startsWith("favourite.") || event.kind === "workspace.added" || event.kind === "member.changed",
    };
}

/** Asks for a new item's texts and makes it, here or with its design in the program. */
async function newItem(place, program) {
    const given = await askPerson(text("PageNewItem"), [
        { name: "caption", label: text("PageCaption"), required: true, maxlength: 255, autocomplete: "off" },
        { name: "description", label: text("PageDescription"), kind: "textarea", rows: 4, maxlength: 20000 },
    ], ["make", text("PageMake")], ["program", text("PageMakeDesign")]);
    if (!given)
        return;
    if (given.choice === "program") {
        await program.request("ItemhubNewItemCommand", {
            ItemhubWorkspaceId: place.id, ItemhubItemName: given.caption, ItemhubItemDescription: given.description });
        return;
    }
    const made = await make(`workspaces/${place.id}/items`, { caption: given.caption, description: given.description });
    location.hash = `#/items/${made.id}`;
}

const programs = new Map(); // What the program was asked for, by workspace.
const kOrders = ["changed", "newest", "oldest", "name"];
let order = kOrders.find(each => each === localStorage.getItem("order")) ?? kOrders[0];

/** Where the reader says how items are sorted, which the browser remembers. */
function sorting(again) {
    return element("label", { class: "sorting" }, text("PageSort"), element("select", {
        name: "order",
        onchange: doing(async event => {
            order = event.target.value;
            localStorage.setItem("order", order);
            await again();
        }),
    }, ...kOrders.map(each => element("option", { value: each, selected: each === order }, text(`PageSort_${each}`)))));
}

export async function oneWorkspace(id) {
    const place = await workspace(id);
    const part = after => ask("GET", `workspaces/${id}/items?limit=60&order=${order}${after ? `&after=${after}` : ""}`);
    const first = await part();
    const list = element("div", {}, cards(first.items, text("PageNoItems")));
    let next = first.next;
    const sort = sorting(async () => {
        const answer = await part();
        list.replaceChildren(cards(answer.items, text("PageNoItems")));
        next = answer.next;
        more.hidden = next === undefined;
    });
    const program = programs.get(id) ?? programPart();
    programs.set(id, program);
    const more = button(text("PageMore"), doing(async () => {
        const answer = await part(next);
        list.querySelector("ul").append(...answer.items.map(item => card(item)));
        next = answer.next;
        more.hidden = next === undefined;
    }), { hidden: next === undefined });
    return {
        title: place.name,
        actions: [mayAdminister(place) ? element("a", { class: "button", href: `#/workspaces/${id}/people` }, text("PagePeople")) : "",
            ...mayWrite(place) ? [button(text("PageNewItemButton"), doing(() => newItem(place, program)), { class: "main" })] : []],
        content: [keptPlace(program), first.items.length > 1 ? sort : "", list, more],
        isAbout: event => event.workspaceId === id && /^(item|attachment|version)\./.test(event.kind),
    };
}

export async function found(query) {
    const answer = query.trim() === "" ? { items: [] } : await ask("GET", `search?limit=100&q=${encodeURIComponent(query.slice(0, 100))}`);
    tell(answer.items.length === 0 ? "" : text("PageFoundCount", answer.items.length));
    return {
        title: text("PageFound", query),
        content: [cards(answer.items, text("PageNothingFound"))],
        isAbout: () => false,
    };
}

