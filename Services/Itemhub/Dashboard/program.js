// How the page drives the program: it asks the service, which tells the account's programs. Where none takes it, a link starts one.

import { element, tell, tellFailure, text } from "./dom.js";
import { ask } from "./service.js";

const kPatienceMs = 2500; // Until the page offers to start the program.
const kLifetimeMs = 60000; // Of a request that nobody takes.
const pause = milliseconds => new Promise(resolve => setTimeout(resolve, milliseconds));

/** What came of a request, once that is known; `waits` is called when nobody has taken it for a while. */
async function outcome(request, waits) {
    const begun = Date.now();
    let offered = false;
    for (;;) {
        const now = await ask("GET", `program/requests/${request.id}`);
        // By how long it has been, since clocks differ.
        if (now.state === "waiting" && Date.now() - begun > kLifetimeMs)
            return { ...now, state: "late" };
        if (now.state !== "waiting" && now.state !== "taken")
            return now;
        if (now.state === "waiting" && !offered && Date.now() - begun > kPatienceMs) {
            offered = true;
            waits();
        } else if (now.state === "taken" && offered) {
            offered = false;
            waits(false);
        }
        await pause(Date.now() - begun < 4000 ? 200 : 1000);
    }
}

/** Below the buttons: how far the program is, and the link that starts it. */
export function programPart() {
    const state = element("p", { role: "status", class: "small" });
    const start = element("a", { class: "button main", hidden: true }, text("PageStart"));
    const place = element("div", { class: "program" }, state, start);
    let last = 0;

    const follow = async (request, number, say) => {
        const end = await outcome(request, (isWaiting = true) => {
            if (number !== last)
                return;
            start.href = request.ticket;
            start.hidden = !isWaiting;
            say(isWaiting ? "PageNoProgram" : "PageTaken");
        });
        if (number === last)
            start.hidden = true;
        say({ done: "PageDone", refused: "PageRefused", late: "PageLate" }[end.state] ?? "PageProgramFailed", end.detail);
    };

    /** Asks for a command. What comes of it is shown here, while the page can be used. */
    place.request = async (name, args) => {
        const number = ++last;
        const say = (key, ...values) => {
            if (number === last)
                state.textContent = text(key, ...values);
        };
        start.hidden = true;
        state.textContent = "";
        tell("");
        const request = await ask("POST", "program/requests", { name, args });
        say("PageAsking");
        follow(request, number, say).catch(tellFailure);
    };
    return place;
}
