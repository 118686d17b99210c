// An item with all that it has.

import { ask as askPerson, button, doing, element, keptPlace, picture, section, size, sure, tell, text, time } from "./dom.js";
import { cards, star } from "./lists.js";
import { programPart } from "./program.js";
import { all, ask, make, mayWrite, session, workspace } from "./service.js";

const kDesign = "VeloraDocType"; // What the program opens.

function version(attachment, each) {
    const path = `attachments/${attachment.id}/versions/${each.number}`;
    return element("li", {},
        picture(`${path}/picture`, "thumb"),
        element("div", {},
            element("strong", {}, text("PageVersion", each.number)),
            each.label ? element("span", { class: "label" }, element("bdi", {}, each.label)) : null,
            element("div", { class: "small" }, element("bdi", {}, each.author), " · ", time(each.createdAt), " · ", size(each.size))),
        element("a", { class: "button", href: `${path}/content`, download: attachment.name,
            "aria-label": text("PageDownloadVersion", attachment.name, each.number) }, text("PageDownload")));
}

const programs = new Map(); // What the program was asked for, by item; it stays when the item is shown anew.

function programOf(id) {
    if (!programs.has(id))
        programs.set(id, programPart());
    return programs.get(id);
}

/** What the program can do with an item that has a design. */
function actions(item, place, design) {
    const program = programOf(item.id);
    const asks = (key, name, args, properties = {}) =>
        button(text(key), doing(async () => {
            const given = await args();
            if (given)
                await program.request(name, given);
        }), properties);
    const buttons = [
        asks("PageOpen", "ItemhubOpenAttachmentCommand", () => ({ fileUri: design.uri }), { class: "main" }),
        asks("PageInsert", "ItemhubInsertComponentCommand",
            () => ({ ItemhubWorkspaceId: place.id, ItemhubItemId: item.id, ItemhubDocType: design.docType })),
    ];
    if (mayWrite(place))
        buttons.push(asks("PageMark", "ItemhubSaveCommand", async () => {
            const given = await askPerson(text("PageMarkTitle"), [
                { name: "label", label: text("PageLabel"), required: true, maxlength: 255, autocomplete: "off" },
            ], ["mark", text("PageMarkButton")]);
            return given && { ItemhubSaveLabel: given.label, ItemhubItemId: item.id };
        }));
    return element("div", { class: "actions" }, ...buttons, keptPlace(program));
}

async function file(attachment) {
    const versions = (await all(`attachments/${attachment.id}/versions`, "versions")).reverse();
    const kMost = 10;
    const list = element("ol", { class: "versions", reversed: true, role: "list" },
        ...versions.slice(0, kMost).map(each => version(attachment, each)));
    const more = button(text("PageMoreVersions", versions.length - kMost), () => {
        list.append(...versions.slice(kMost).map(each => version(attachment, each)));
        more.remove();
    });
    return element("article", { class: "file" },
        element("h3", {}, element("bdi", {}, attachment.name)),
        versions.length > 0 ? list : element("p", { class: "small" }, text("PageNoVersions")),
        versions.length > kMost ? more : null);
}

function comment(each, place) {
    const mayRemove = mayWrite(place) && (each.author === session.account || place.role === "admin");
    return element("li", {},
        element("div", { class: "small" }, element("bdi", {}, each.author), " · ", time(each.createdAt),
            mayRemove ? button(text("PageRemove"), doing(() => removeComment(each)), {
                class: "remove", "aria-label": text("PageRemoveCommentOf", each.author) }) : null),
        element("p", { class: "written", dir: "auto" }, each.body));
}

async function removeComment(each) {
    if (await sure(text("PageRemoveComment"))) {
        await ask("DELETE", `comments/${each.id}`);
        tell(text("PageCommentRemoved"));
    }
}

async function unlink(item, linked) {
    if (await sure(text("PageUnlinkSure", linked.caption))) {
        await ask("DELETE", `items/${item.id}/links/${linked.id}`);
        tell(text("PageUnlinked", linked.caption));
    }
}

/** The comments, and where another one is written. What is being typed there stays when the list is shown anew. */
function comments(id, shown, place, typed) {
    const list = element("ol", { class: "comments", role: "list" }, ...shown.map(each => comment(each, place)));
    const parts = [shown.length > 0 ? list : element("p", { class: "small" }, text("PageNoComments"))];
    if (mayWrite(place))
        parts.push(element("form", {
            onsubmit: doing(async () => {
                await make(`items/${id}/comments`, { body: typed.value });
                typed.value = "";
                tell(text("PageCommented"));
            }),
        }, element("label", {}, text("PageComment"), keptPlace(typed)), element("button", {}, text("PageSend"))));
    return section(text("PageComments"), ...parts);
}

/** Asks for another item and links to it. */
async function link(item) {
    const given = await askPerson(text("PageLinkTitle", item.caption), [
        { name: "other", label: text("PageLinkNumber"), required: true, inputmode: "numeric", pattern: "[0-9]{1,15}", autocomplete: "off" },
    ], ["link", text("PageLinkButton")]);
    if (given)
        await ask("POST", `items/${item.id}/links`, { itemId: Number(given.other) });
}

const drafts = new Map(); // What was typed, by item.

function draft(id) {
    if (!drafts.has(id))
        drafts.set(id, element("textarea", { rows: 3, maxlength: 20000, required: true }));
    return drafts.get(id);
}

export async function oneItem(id) {
    const item = await ask("GET", `items/${id}`);
    const [place, attachments, links, said] = await Promise.all([
        workspace(item.workspaceId), all(`items/${id}/attachments`, "attachments"),
        all(`items/${id}/links`, "items"), all(`items/${id}/comments`, "comments")]);
    const files = await Promise.all(attachments.map(file));
    const design = attachments.find(each => each.docType === kDesign && each.latestVersion > 0);
    return {
        title: item.caption,
        place: place.id,
        actions: [star(item)],
        content: [
            element("p", { class: "small" },
                text("PageItem", id), " · ", element("a", { href: `#/workspaces/${place.id}` }, element("bdi", {}, place.name)), " · ",
                element("bdi", {}, item.createdBy), " · ", time(item.changedAt)),
            element("div", { class: "overview" },
                picture(`items/${id}/picture`, "large"),
                element("div", {}, design ? actions(item, place, design) : null, item.description ? element("p", { class: "written", dir: "auto" }, item.description)
                    : element("p", { class: "small" }, text("PageNoDescription")))),
            section(text("PageFiles"), ...files, files.length === 0 ? element("p", { class: "small" }, text("PageNoFiles")) : null),
            comments(id, said, place, draft(id)),
            section(text("PageLinks"), cards(links, text("PageNoLinks"), linked => mayWrite(place)
                ? button(text("PageRemove"), doing(() => unlink(item, linked)), { class: "remove", "aria-label": text("PageUnlink", linked.caption) })
                : null), mayWrite(place)
                ? element("p", { class: "below" }, button(text("PageLink"), doing(() => link(item)))) : null),
        ],
        isAbout: event => event.itemId === id && !event.kind.startsWith("favourite."),
    };
}
