// How roles are shown and chosen.

import { doing, element, tell, text } from "./dom.js";

export const kRoles = ["reader", "writer", "admin"];

/** Where somebody's role is chosen; null stands for none. */
export function roleChoice(name, role, change) {
    const shown = element("select", {
        "aria-label": text("PageRoleOf", name),
        onchange: doing(async () => {
            await change(shown.value || null);
            tell(text("PageRoleChanged", name));
        }),
    }, ...[...kRoles, ""].map(each => element("option", { value: each, selected: each === (role ?? "") },
        text(each ? `PageRole_${each}` : "PageRole_none"))));
    return shown;
}

/** A line of a list: a name, what else there is to know, and what can be done. */
export function row(name, detail, ...controls) {
    return element("li", {}, element("div", {}, element("bdi", {}, name), element("div", { class: "small" }, ...detail)),
        element("div", { class: "controls" }, ...controls));
}

export const rows = (entries, whenEmpty) => entries.length === 0 ? element("p", { class: "small" }, whenEmpty)
    : element("ul", { class: "rows", role: "list" }, ...entries);
