// Lets the page load over encrypted connections alone, wherever a server redirects it to: a policy that stands before the page's
// first element, so that nothing of the page comes before it. Frames without an address and workers made of texts inherit it;
// other workers would have none, and are not made. Plug-ins have nothing to show. Frames are the application's to judge. Texts
// become scripts through the policy of peers.js alone.
() => {
    "use strict";
    const places = "https: wss: data: blob: 'unsafe-inline' 'unsafe-eval'";
    const kinds = ["connect", "font", "img", "manifest", "media", "prefetch", "script", "style"];
    const rules = kinds.map((kind) => `${kind}-src ${places}`);
    const element = (name) => document.createElementNS("http://www.w3.org/1999/xhtml", name);
    const [root, head, policy] = ["html", "head", "meta"].map(element);
    policy.httpEquiv = "Content-Security-Policy";
    policy.content = [...rules, "worker-src data: blob:", "object-src 'none'", "require-trusted-types-for 'script'"].join("; ");
    head.append(policy);
    root.append(head);
    // It counts from the moment at which it stands in a document's head, and for good. The engine tells of a document that is
    // no HTML only when that has a root.
    const own = document.documentElement;
    own ? own.replaceWith(root) : document.append(root);
    own ? root.replaceWith(own) : root.remove();
}
