// Tells the application which form leaves the page with which data, before it leaves. It runs in a world of scripts of its own, in
// every frame: the pages' scripts do not see it, and what they have changed in their world does not reach it. What it says begins
// with a word that no page knows.
(word) => {
    "use strict";
    const mostCharacters = 1 << 20;
    // Submit events whose form is about to be sent, by form.
    const submissions = new WeakMap();
    // The form that was told last, for the case that it has to be sent again.
    let last = null;

    // Fields with names like "action" and elements named like properties of the document hide those properties, in every
    // world. The prototypes' own getters are never hidden.
    const read = (type, name, object) => Object.getOwnPropertyDescriptor(type.prototype, name).get.call(object);
    const element = (document, name) =>
        Document.prototype.createElementNS.call(document, "http://www.w3.org/1999/xhtml", name);
    const documentOf = (node) => read(Node, "ownerDocument", node);

    // Runs a job after the scripts that are running now and before a form that they send leaves the page: both wait in one
    // queue, the DOM manipulation task source (HTML Standard: form submission, and the toggle event of details).
    function soon(document, job) {
        const details = element(document, "details");
        details.addEventListener("toggle", job, { once: true });
        details.open = true;
    }

    // The first of the form's charsets that there is, else the document's.
    function charsetOf(form) {
        let charset = read(Document, "characterSet", documentOf(form)).toLowerCase();
        for (const label of read(HTMLFormElement, "acceptCharset", form).split(/[\s,]+/)) {
            try {
                charset = new TextDecoder(label).encoding;
                break;
            } catch {
                // No charset: the next one.
            }
        }
        return charset.startsWith("utf-16") ? "utf-8" : charset;
    }

    // Without a value if there is more than is taken.
    function fieldsOf(entries) {
        const fields = [];
        let size = 0;
        for (const [name, value] of entries) {
            const isFile = typeof value !== "string";
            const text = isFile ? value.name : value;
            size += name.length + text.length;
            if (size > mostCharacters) return undefined;
            fields.push(isFile ? { name, value: text, type: value.type } : { name, value: text });
        }
        return fields;
    }

    // The button that sends the form. Its data are collected when all listeners of the submit event have run; a form whose
    // data are collected for another reason, or by submit(), has none.
    function submitterOf(form) {
        const event = submissions.get(form);
        if (!event || event.eventPhase !== Event.NONE || event.defaultPrevented) return null;
        submissions.delete(form);
        return event.submitter;
    }

    function attributesOf(form) {
        const submitter = submitterOf(form);
        const chosen = (name, own) =>
            submitter?.hasAttribute("form" + name.toLowerCase()) ? submitter["form" + name] : own;
        return {
            action: chosen("Action", read(HTMLFormElement, "action", form)),
            method: chosen("Method", read(HTMLFormElement, "method", form)),
            enctype: chosen("Enctype", read(HTMLFormElement, "enctype", form)),
            "accept-charset": charsetOf(form),
        };
    }

    function onSubmit(event) {
        if (!event.isTrusted) return;
        const form = event.target;
        submissions.set(form, event);
        soon(documentOf(form), () => {
            if (submissions.get(form) === event) submissions.delete(form);
        });
    }

    // The form's attributes count as they are now; its data as all listeners leave them.
    function onFormData(event) {
        if (!event.isTrusted) return;
        const attributes = attributesOf(event.target);
        soon(documentOf(event.target), () => {
            last = { attributes, entries: [...event.formData] };
            console.log(word + JSON.stringify({ ...attributes, fields: fieldsOf(last.entries) }));
        });
    }

    // For the application: sends the form that was told last once more, with the data of then.
    globalThis.sendAgain = () => {
        const { attributes, entries } = last;
        const form = element(document, "form");
        for (const [name, value] of Object.entries(attributes)) form.setAttribute(name, value);
        form.addEventListener("formdata", (event) => {
            event.stopImmediatePropagation();
            for (const name of [...event.formData.keys()]) event.formData.delete(name);
            for (const [name, value] of entries) event.formData.append(name, value);
        });
        read(Document, "documentElement", document).append(form);
        form.submit();
        form.remove();
    };

    // The engine runs no script in a frame without an address: those are watched from the frame around them. A page that
    // writes itself anew (document.open) drops all listeners, but no observer.
    const onChange = () => watch(globalThis);
    const observer = new MutationObserver(onChange);
    globalThis.isWatchingForms = true;

    function watch(view) {
        try {
            if (view !== globalThis && view.isWatchingForms) return;
            for (const name of ["RTCPeerConnection", "webkitRTCPeerConnection"]) delete view[name];
            view.addEventListener("submit", onSubmit, true);
            view.addEventListener("formdata", onFormData, true);
            view.document.addEventListener("load", onChange, true);
            observer.observe(view.document, { childList: true, subtree: true });
        } catch {
            return; // Of another origin, and so with an address.
        }
        for (let i = 0; view[i]; ++i) watch(view[i]);
    }

    watch(globalThis);
}
