// Keeps what the form that leaves the page sends, for the application to fetch. It runs in a world of scripts of its own: the
// page's scripts do not see it, and what they have changed in their world does not reach it.
"use strict";
(() => {
    const mostCharacters = 1 << 20;
    // Submit events whose form is about to be sent, by form.
    const submissions = new WeakMap();
    // The form whose data were collected last, and the one that the page has just set out with; or null.
    let collected = null;
    let leaving = null;

    // Fields with names like "action" and elements named like properties of the document hide those properties, in every
    // world. The prototypes' own getters are never hidden.
    const read = (type, name, object) => Object.getOwnPropertyDescriptor(type.prototype, name).get.call(object);
    const element = (name) =>
        Document.prototype.createElementNS.call(document, "http://www.w3.org/1999/xhtml", name);

    // Runs a job after the scripts that are running now and before a form that they send leaves the page: both wait in one
    // queue, the DOM manipulation task source (HTML Standard: form submission, and the toggle event of details).
    function soon(job) {
        const details = element("details");
        details.addEventListener("toggle", job, { once: true });
        details.open = true;
    }

    // The first of the form's charsets that there is, else the document's.
    function charsetOf(form) {
        let charset = read(Document, "characterSet", document).toLowerCase();
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

    function fieldsOf(entries) {
        const fields = [];
        let size = 0;
        for (const [name, value] of entries) {
            const isFile = value instanceof File;
            const text = isFile ? value.name : value;
            size += name.length + text.length;
            if (size > mostCharacters) return null;
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
        soon(() => {
            if (submissions.get(form) === event) submissions.delete(form);
        });
    }

    // The form's attributes count as they are now; its data as all listeners leave them.
    function onFormData(event) {
        if (!event.isTrusted) return;
        const attributes = attributesOf(event.target);
        soon(() => (collected = { attributes, entries: [...event.formData] }));
    }

    // The page sets out. If it does so with a form, that form's data were collected last.
    function onDeparture() {
        leaving = collected;
        collected = null;
    }

    // For the application: the form as JSON, or nothing. Without "fields" if there is more than is taken.
    globalThis.leavingForm = () =>
        leaving ? JSON.stringify({ ...leaving.attributes, fields: fieldsOf(leaving.entries) }) : "";

    // For the application: sends that form once more, with the data of then.
    globalThis.sendAgain = () => {
        const { attributes, entries } = leaving;
        const form = element("form");
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

    function listen() {
        addEventListener("submit", onSubmit, true);
        addEventListener("formdata", onFormData, true);
        addEventListener("beforeunload", onDeparture, true);
    }

    listen();
    // A page that writes itself anew (document.open) drops all listeners, but not this observer.
    new MutationObserver(listen).observe(document, { childList: true });
})();
