// What the page asks the service for. Everything is of the page's own origin; who asks, the browser's cookie says.

import { text } from "./dom.js";

export const session = JSON.parse(document.getElementById("session").textContent);

export class Refused extends Error {
    constructor(status, problem) {
        super(problem.detail ?? text("PageFailed", status));
        this.status = status;
        this.code = problem.code;
    }
}

/** Asks and gives what the service answers; null where that is nothing. Throws Refused, or an error that says why not. */
export async function ask(method, path, body = undefined, headers = {}) {
    if (method !== "GET")
        headers = { ...headers, "X-CSRF-Token": session.proof };
    if (body !== undefined)
        headers = { ...headers, "Content-Type": "application/json" };
    let response;
    try {
        response = await fetch(path, { method, headers, body: body && JSON.stringify(body) });
    } catch {
        throw new Error(text("PageAway"));
    }
    if (response.status === 401)
        location.reload(); // The session has ended; the page asks to sign in.
    if (!response.ok)
        throw new Refused(response.status, await response.json().catch(() => ({})));
    return response.status === 204 ? null : response.json();
}

/** Makes something, once, however often the network fails meanwhile. */
export function make(path, body) {
    return ask("POST", path, body, { "Idempotency-Key": crypto.getRandomValues(new Uint32Array(4)).join("-") });
}

/** All entries of a list that comes in parts, or of its first so many parts. */
export async function all(path, name, parts = 20) {
    const entries = [];
    for (let after = 0; parts > 0 && after !== undefined; --parts) {
        const answer = await ask("GET", `${path}?limit=500&after=${after}`);
        entries.push(...answer[name]);
        after = answer.next;
    }
    return entries;
}

let known = null;

/** The workspaces in which the reader has a role; asked for once, until `forget`. */
export function workspaces(forget = false) {
    if (forget || !known)
        known = all("workspaces", "workspaces");
    return known;
}

export async function workspace(id) {
    return (await workspaces()).find(each => each.id === id) ?? { id, name: String(id), role: "reader" };
}

/** Whether the reader's session may do what an administrator of the workspace does. */
export const mayAdminister = workspace => workspace.role === "admin" && session.scope === "admin";
export const mayWrite = workspace => workspace.role !== "reader";

/** Calls `happened` with each event from now on, while the page is seen. */
export function listen(happened) {
    const kinds = ["workspace.added", "member.changed", "item.added", "item.changed", "item.removed", "link.added",
        "link.removed", "comment.added", "comment.removed", "attachment.added", "attachment.removed",
        "version.added", "favourite.added", "favourite.removed"];
    let source = null, wasHidden = false;
    const follow = () => {
        if (document.hidden) {
            source?.close();
            source = null;
            wasHidden = true;
            return;
        }
        if (source)
            return;
        source = new EventSource("events?after=now");
        for (const kind of kinds)
            source.addEventListener(kind, event => happened(JSON.parse(event.data)));
        if (wasHidden)
            happened({ kind: "seen" }); // Whatever was missed meanwhile.
    };
    document.addEventListener("visibilitychange", follow);
    follow();
}
