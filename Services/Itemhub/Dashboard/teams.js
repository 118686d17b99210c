// People who have roles together: in a workspace, and everywhere.

import { ask as askPerson, button, doing, element, section, sure, tell, text } from "./dom.js";
import { roleChoice, row, rows } from "./roles.js";
import { all, ask } from "./service.js";

/** The teams' roles in the workspace of that path; nothing where there are no teams. */
export async function teamsHere(path) {
    const teams = await all(`${path}/teams`, "teams");
    return teams.length === 0 ? "" : section(text("PageTeams"), rows(teams.map(each => row(each.name,
        [each.everywhere ? `${text("PageEverywhere")}: ${text(`PageRole_${each.everywhere}`)}` : ""],
        roleChoice(each.name, each.role, role => role ? ask("PUT", `${path}/teams/${each.id}`, { role })
            : ask("DELETE", `${path}/teams/${each.id}`)))), ""));
}

function team(each, again) {
    const path = `teams/${each.id}`;
    const change = (method, account) => doing(async () => {
        await ask(method, `${path}/members/${encodeURIComponent(account())}`);
        again();
    });
    const added = element("input", { required: true, maxlength: 128, autocomplete: "off", placeholder: text("PageAddMember"), "aria-label": text("PageAddToTeam", each.name) });
    return element("li", { class: "team" },
        element("h3", {}, element("bdi", {}, each.name)),
        element("div", { class: "controls" },
            roleChoice(each.name, each.everywhere, role => ask("PATCH", path, { everywhere: role })),
            button(text("PageDissolve"), doing(async () => {
                if (await sure(text("PageDissolveSure", each.name), text("PageDissolve"))) {
                    await ask("DELETE", path);
                    again();
                }
            }), { "aria-label": text("PageDissolveOf", each.name) })),
        element("ul", { class: "members", role: "list" }, ...each.members.map(name => element("li", {}, element("bdi", {}, name),
            button(text("PageRemove"), change("DELETE", () => name), { class: "remove", "aria-label": text("PageRemoveFromTeam", name, each.name) })))),
        element("form", { onsubmit: change("PUT", () => added.value) }, added, element("button", {}, text("PageAdd"))));
}

/** All teams of the customer, for who manages them. */
export async function teamsPart(again) {
    const teams = await all("teams", "teams");
    return section(text("PageTeams"), rows(teams.map(each => team(each, again)), text("PageNoTeams")),
        element("p", { class: "below" }, button(text("PageNewTeamButton"), doing(async () => {
            const given = await askPerson(text("PageNewTeam"), [
                { name: "name", label: text("PageCaption"), required: true, maxlength: 255, autocomplete: "off" },
            ], ["make", text("PageMake")]);
            if (!given)
                return;
            await ask("POST", "teams", { name: given.name });
            tell(text("PageTeamMade", given.name));
            again();
        }))));
}
