// Takes WebRTC from the page, which would reach the network past everyone who is asked. It lies in the page's own world, and so
// holds on to what it calls before the page can change it. The engine runs no script in a frame without an address: the frames
// around such a one empty it before the page can reach it, by its place in the window or by its element.
() => {
    "use strict";
    const gone = ["RTCPeerConnection", "webkitRTCPeerConnection"];
    const { apply, defineProperty, getOwnPropertyDescriptor } = Reflect;
    const { addEventListener } = EventTarget.prototype;
    const { observe } = MutationObserver.prototype;
    const { indexOf, slice } = String.prototype;
    const onChange = () => empty(globalThis);
    // What a parser inserts: it gives way to this before it runs the next script.
    const observer = new MutationObserver(onChange);

    // Texts become markup and scripts as they are, but a javascript: address can act only: what it gives would be a document
    // with a window of its own. In a frame that nobody has emptied yet there is no such policy, and so no such script.
    const same = (text) => text;
    const createScript = (text, type, sink) => (sink === "Location href" ? `${text}\n;void 0` : text);
    const texts = { createHTML: same, createScriptURL: same, createScript };

    function each(list, job) {
        for (let i = 0; i < list.length; ++i) job(list[i]);
    }

    // A window and all within it; one of another origin has this script of its own.
    function empty(view) {
        try {
            const isNew = gone[0] in view;
            each(gone, (name) => delete view[name]);
            if (isNew) guard(view);
            // What scripts insert is told at once; a frame that is complete at its insertion, even before.
            apply(addEventListener, view, ["DOMNodeInserted", onChange, true]);
            apply(addEventListener, view.document, ["load", onChange, true]);
            apply(observe, observer, [view.document, { childList: true, subtree: true }]);
            if (isNew) view.trustedTypes.createPolicy("default", texts);
        } catch {
            return;
        }
        for (let i = 0; view[i]; ++i) empty(view[i]);
    }

    function replace(prototype, name, key, make) {
        const description = getOwnPropertyDescriptor(prototype, name);
        description[key] = make(description[key]);
        defineProperty(prototype, name, description);
    }

    // A new window's ways to frames that no event tells of: its own writing, and elements in shadow trees.
    function guard({ Document, HTMLIFrameElement, HTMLFrameElement, HTMLObjectElement }) {
        replace(Document.prototype, "open", "value", opened);
        replace(Document.prototype, "write", "value", (write) => written(write, ""));
        replace(Document.prototype, "writeln", "value", (write) => written(write, "\n"));
        each([HTMLIFrameElement, HTMLFrameElement, HTMLObjectElement], ({ prototype }) => {
            const content = getOwnPropertyDescriptor(prototype, "contentWindow").get;
            const reached = (get) =>
                function () {
                    const view = apply(content, this, []);
                    if (view) empty(view);
                    return apply(get, this, []);
                };
            each(["contentWindow", "contentDocument"], (name) => replace(prototype, name, "get", reached));
        });
    }

    // Drops all listeners.
    const opened = (open) =>
        function () {
            const result = apply(open, this, arguments);
            onChange();
            return result;
        };

    // Tag by tag: a script in the text runs before the whole is written.
    const written = (write, end) =>
        function () {
            let text = "";
            each(arguments, (part) => (text += part));
            text += end;
            let from = 0;
            do {
                const next = apply(indexOf, text, [">", from]) + 1 || text.length;
                apply(write, this, [apply(slice, text, [from, next])]);
                onChange();
                from = next;
            } while (from < text.length);
        };

    empty(globalThis);
}
