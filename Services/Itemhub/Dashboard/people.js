// Who may do what: in a workspace, and everywhere; and the sessions of whoever reads it.

import { ask as askPerson, button, doing, element, section, sure, tell, text, time } from "./dom.js";
import { kRoles, roleChoice, row, rows } from "./roles.js";
import { ask, session, workspace } from "./service.js";
import { teamsHere, teamsPart } from "./teams.js";

async function invite(id, shown) {
    const given = await askPerson(text("PageInviteTitle"), [
        { name: "label", label: text("PageInviteWhom"), required: true, maxlength: 255, autocomplete: "off" },
        { name: "role", label: text("PageInviteRole"), kind: "select", options: kRoles.map(each => [each, text(`PageRole_${each}`)]) },
    ], ["invite", text("PageInviteButton")]);
    if (!given)
        return false;
    const made = await ask("POST", `workspaces/${id}/invitations`, { label: given.label, role: given.role });
    shown.replaceChildren(element("label", {}, text("PageInviteLink", given.label),
        element("input", { readonly: true, value: made.url, class: "link", onfocus: event => event.target.select() })));
    return true;
}

/** By what somebody has a role, where that isn't his own one in the workspace. */
function originOf(member) {
    return [member.team ? text("PageByTeam", member.team) : "", member.team && member.everywhere ? " · " : "",
        member.everywhere ? text("PageEverywhere") : ""];
}

/** Who has a role in a workspace, and who is invited. */
export async function people(id, again) {
    const path = `workspaces/${id}`;
    const [place, { members }, { invitations }, teams] = await Promise.all([
        workspace(id), ask("GET", `${path}/members`), ask("GET", `${path}/invitations?limit=500`), teamsHere(path)]);
    const set = (name, role) => role ? ask("PUT", `${path}/members/${encodeURIComponent(name)}`, { role })
        : ask("DELETE", `${path}/members/${encodeURIComponent(name)}`);
    const link = people.link ??= element("div", { class: "below" });
    const added = element("input", { name: "account", required: true, maxlength: 128, autocomplete: "off" });
    return {
        title: text("PagePeopleOf", place.name),
        place: id,
        content: [
            section(text("PageMembers"), rows(members.map(each => row(each.account, originOf(each),
                each.everywhere || each.team ? text(`PageRole_${each.role}`) : roleChoice(each.account, each.role, role => set(each.account, role)))), ""),
            element("form", {
                onsubmit: doing(async () => {
                    await set(added.value, "reader");
                    tell(text("PageRoleChanged", added.value));
                }),
            }, element("label", {}, text("PageAddMember"), added), element("button", {}, text("PageAdd")))),
            teams,
            section(text("PageInvitations"), rows(invitations.map(each => row(each.label,
                [text(`PageRole_${each.role}`), " · ", element("bdi", {}, each.invitedBy), " · ", text("PageUntil"), " ", time(each.expiresAt)],
                button(text("PageRemove"), doing(async () => {
                    await ask("DELETE", `${path}/invitations/${each.id}`);
                    again();
                }), { "aria-label": text("PageRemoveInvitation", each.label) }))), text("PageNoInvitations")),
            element("p", { class: "below" }, button(text("PageInvite"), doing(async () => {
                if (await invite(id, link))
                    again();
            }))), link),
        ],
        isAbout: event => event.kind === "member.changed",
    };
}

function account(each, again) {
    const path = `accounts/${encodeURIComponent(each.account)}`;
    const isOwn = each.account === session.account;
    const detail = [each.disabled ? text("PageDisabled") : "", isOwn ? text("PageYourself") : ""].filter(Boolean).join(" · ");
    return row(each.account, [detail], ...(isOwn ? [each.everywhere ? text(`PageRole_${each.everywhere}`) : ""] : [
        roleChoice(each.account, each.everywhere, role => ask("PATCH", path, { everywhere: role })),
        button(text(each.disabled ? "PageEnable" : "PageDisable"), doing(async () => {
            if (each.disabled || await sure(text("PageDisableSure", each.account), text("PageDisable"))) {
                await ask("PATCH", path, { disabled: !each.disabled });
                again();
            }
        }), { "aria-label": text(each.disabled ? "PageEnableOf" : "PageDisableOf", each.account) })]));
}

async function auditPart() {
    const body = element("tbody");
    const more = button(text("PageMore"), doing(() => show()), { class: "below" });
    let before = 0;
    const show = async () => {
        const part = await ask("GET", `audit?limit=50${before ? `&after=${before}` : ""}`);
        body.append(...part.records.map(each => element("tr", {}, element("td", {}, time(each.at)), element("td", {}, element("bdi", {}, each.account)),
            element("td", {}, each.action), element("td", {}, element("bdi", {}, each.subject)), element("td", {}, each.address))));
        before = part.next;
        more.hidden = before === undefined;
    };
    await show();
    const heads = ["PageWhen", "PageWho", "PageWhat", "PageAbout", "PageFrom"];
    return section(text("PageAudit"), element("div", { class: "wide-table", tabindex: "0", role: "region", "aria-label": text("PageAudit") },
        element("table", {}, element("thead", {}, element("tr", {}, ...heads.map(head => element("th", { scope: "col" }, text(head))))), body)), more);
}

/** Who the reader is for the provider of sign-ins. */
function providerPart() {
    const shown = session.linked ? button(text("PageUnlinkProvider"), doing(async () => {
        await ask("DELETE", "dashboard/provider");
        location.reload();
    })) : button(text("PageLinkProvider", session.provider), doing(async () => {
        location.href = (await ask("POST", "dashboard/provider")).url;
    }));
    return section(session.provider, element("p", { class: "small" }, text(session.linked ? "PageLinkedProvider" : "PageUnlinkedProvider", session.provider)),
        element("p", { class: "below" }, shown));
}

/** The reader's sessions; for administrators, all accounts and what has happened. */
export async function ownAccount(again) {
    const { tokens } = await ask("GET", "tokens");
    const content = [section(text("PageSessions"), rows(tokens.map(each => row(each.label,
        [text("PageSince"), " ", time(each.createdAt), " · ", text("PageUntil"), " ", time(each.expiresAt)],
        button(text("PageEnd"), doing(async () => {
            await ask("DELETE", `tokens/${each.id}`);
            again();
        }), { "aria-label": text("PageEndOf", each.label) })))))];
    if (session.provider)
        content.push(providerPart());
    if (session.administers) {
        const { accounts } = await ask("GET", "accounts?limit=500");
        content.push(section(text("PageAccounts"), rows(accounts.map(each => account(each, again)))), await teamsPart(again), await auditPart());
    } else if (session.scope !== "admin") {
        content.push(element("p", { class: "small" }, text("PageNoScope")));
    }
    return { title: text("PageAccount", session.account), content, isAbout: event => event.kind === "member.changed" };
}
