// What the page is made of: elements with texts in them, never markup, whatever others have written.

const texts = JSON.parse(document.getElementById("texts").textContent);
const language = document.documentElement.lang;

/** A text of the page in the reader's language; %1% and so on are replaced by the values. */
export function text(key, ...values) {
    return (texts[key] ?? key).replace(/%(\d)%/g, (_, number) => values[number - 1]);
}

/** An element. Properties are attributes; those that begin with "on" are listeners, null ones are left out. */
export function element(name, properties = {}, ...children) {
    const made = document.createElement(name);
    for (const [property, value] of Object.entries(properties)) {
        if (property.startsWith("on"))
            made.addEventListener(property.slice(2), value);
        else if (value !== null && value !== false)
            made.setAttribute(property, value === true ? "" : value);
    }
    made.append(...children.filter(child => child !== null));
    return made;
}

export function button(title, onclick, properties = {}) {
    return element("button", { type: "button", onclick, ...properties }, title);
}

/** A part of the page under a heading of its own. */
export function section(title, ...children) {
    const id = `part-${section.count = (section.count ?? 0) + 1}`;
    return element("section", { "aria-labelledby": id }, element("h2", { id }, title), ...children);
}

const places = new WeakMap(); // What goes where something stands that is kept.

/** The place of an element that outlives the view: what is typed or going on there stays when the view is shown anew. */
export function keptPlace(kept) {
    const place = element("span", { "data-kept": true });
    places.set(place, kept);
    return place;
}

/** Shows a view in the place of another one, with what is kept in its places, and the keyboard where it was. */
export function replace(shown, ...content) {
    const focused = shown.contains(document.activeElement) ? document.activeElement : null;
    shown.replaceChildren(...content);
    for (const place of shown.querySelectorAll("[data-kept]"))
        place.replaceWith(places.get(place));
    if (focused?.isConnected)
        focused.focus({ preventScroll: true });
}

const times = new Intl.DateTimeFormat(language, { dateStyle: "medium", timeStyle: "short" });
export function time(iso) {
    return element("time", { datetime: iso }, times.format(new Date(iso)));
}

export function size(bytes) {
    const units = ["byte", "kilobyte", "megabyte", "gigabyte"];
    let unit = 0;
    for (; bytes >= 1000 && unit + 1 < units.length; ++unit)
        bytes /= 1000;
    return new Intl.NumberFormat(language, {
        style: "unit", unit: units[unit], unitDisplay: unit === 0 ? "long" : "short", maximumFractionDigits: bytes < 10 ? 1 : 0,
    }).format(bytes).replace(" ", "\u00a0");
}

/** A picture of something that stands beside it in words; where there is none, an empty place. */
export function picture(address, className) {
    const frame = element("span", { class: `picture ${className}` });
    const image = element("img", {
        src: address, alt: "", loading: "lazy", decoding: "async", onerror: () => image.remove(),
    });
    frame.append(image);
    return frame;
}

const told = element("p", { id: "told", role: "status" });
const failed = element("p", { id: "failed", role: "alert" });
export const notices = element("div", { class: "notices" }, told, failed);

/** Says what has happened, to screen readers too, until something else has. */
export function tell(message) {
    failed.textContent = "";
    told.textContent = message;
}

export function tellFailure(error) {
    told.textContent = "";
    failed.textContent = error.message ?? String(error);
}

/** Runs what a button does; while it runs, the button does nothing more. What fails is told. */
export function doing(work) {
    return async event => {
        const pressed = event.submitter ?? event.currentTarget;
        event.preventDefault();
        if (pressed.ariaBusy === "true")
            return;
        pressed.ariaBusy = "true";
        try {
            await work(event);
        } catch (error) {
            tellFailure(error);
        } finally {
            pressed.ariaBusy = "false";
        }
    };
}

/** A form over the page for a few texts: resolves to them by name, or to null if it is closed. */
export function ask(title, fields, ...buttons) {
    return new Promise(resolve => {
        const inputs = fields.map(({ name, label, kind = "input", options = [], ...rest }) =>
            element("label", {}, label, element(kind, { name, ...rest }, ...options.map(([value, shown]) => element("option", { value }, shown)))));
        const choices = buttons.map(([value, label], i) =>
            element("button", { value, class: i === 0 ? "main" : null }, label));
        const form = element("form", { method: "dialog" }, element("h2", { id: "asked" }, title), ...inputs,
            element("div", { class: "buttons" }, ...choices,
                button(text("PageCancel"), () => dialog.close(""))));
        const dialog = element("dialog", {
            "aria-labelledby": "asked",
            onclose: () => {
                dialog.remove();
                resolve(dialog.returnValue ? { ...Object.fromEntries(new FormData(form)), choice: dialog.returnValue } : null);
            },
        }, form);
        document.body.append(dialog);
        dialog.showModal();
    });
}

/** Whether the reader means it: what is done doesn't come back by itself. */
export const sure = (question, doIt = text("PageRemove")) => ask(question, [], ["sure", doIt]);
