// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/prelude.h"

namespace orbis {

/// The script half of the bridge: builds the classes from their descriptions,
/// and everything that is shorter to say in JavaScript.
const char* const Prelude = R"JS((function (native, global) {
    "use strict";
    const hide = (object, name, value) =>
        Object.defineProperty(object, name, { value: value, enumerable: false, configurable: true, writable: true });
    const wrapperTag = Symbol("wrapped");
    const prelude = { classes: [] };

    // A promise that fails while nobody listens is an error that nobody caught.
    const NativePromise = global.Promise;
    let isListening = false;
    class Promise extends NativePromise {
        constructor(executor) {
            super(executor);
            if (isListening)
                return; // the promise of the listener itself
            const self = this;
            hide(self, "__heard", false);
            isListening = true;
            try {
                NativePromise.prototype.then.call(self, undefined, error => {
                    global.setTimeout(() => { if (!self.__heard) native.uncaught(error); }, 0);
                });
            } finally {
                isListening = false;
            }
        }
        then(done, failed) {
            this.__heard = true;
            return super.then(done, failed);
        }
    }
    global.Promise = Promise;

    // Keeps an object that a setter was given as long as the one that it was set on.
    function keep(self, name, value) {
        if (!value || (typeof value !== "object" && typeof value !== "function"))
            return;
        if (!self.__kept)
            hide(self, "__kept", {});
        self.__kept[name] = value;
    }

    prelude.link = function (wrapper, handle) {
        hide(wrapper, "__h", handle);
        handle.__js = wrapper;
        return wrapper;
    };
    prelude.wrap = (index, handle) => prelude.link(Object.create(prelude.classes[index].prototype), handle);
    prelude.keepFunction = function (owner, box, f) {
        box.__f = f;
        if (!owner.__functions)
            hide(owner, "__functions", []);
        owner.__functions.push(box);
    };
    prelude.attempt = function (f, self, args) {
        try { return { value: f.apply(self, args) }; } catch (error) { return { error: error, failed: true }; }
    };
    prelude.promise = handle => new Promise((resolve, reject) => global.setTimeout(() => {
        let value;
        try { value = native.forceLazy(handle); } catch (error) { reject(error); return; }
        resolve(value);
    }, 0));
    prelude.func = function (handle) {
        const f = (...args) => native.invoke(handle, args);
        hide(f, "__h", handle);
        return f;
    };
    prelude.names = function (prototype, stop) {
        const names = {};
        for (let p = prototype; p && p !== stop && p !== Object.prototype; p = Object.getPrototypeOf(p))
            for (const name of Object.getOwnPropertyNames(p)) {
                const own = Object.getOwnPropertyDescriptor(p, name);
                if (name !== "constructor" && own && typeof own.value === "function" && !(name in names))
                    names[name] = own.value.length;
            }
        return names;
    };
    prelude.boundPrototype = function (prototype) {
        let p = prototype;
        while (p && !Object.prototype.hasOwnProperty.call(p, "__bound"))
            p = Object.getPrototypeOf(p);
        return p;
    };
    prelude.pairs = function (object) {
        if (ArrayBuffer.isView(object))
            return object.buffer.slice(object.byteOffset, object.byteOffset + object.byteLength);
        const result = [];
        if (object instanceof Map)
            object.forEach((value, key) => result.push(String(key), value));
        else for (const key of Object.keys(object))
            result.push(key, object[key]);
        return result;
    };
    prelude.error = message => new Error(message);
    prelude.watch = function (promise) {
        const state = { done: false };
        promise.then(value => { state.done = true; state.value = value; },
                     error => { state.done = true; state.failed = true; state.error = error; });
        return state;
    };

    function define(prototype, target, entry) {
        const id = entry.id, name = entry.name;
        if (Object.prototype.hasOwnProperty.call(target, name))
            return;
        if (entry.kind === "property" || entry.kind === "signal") {
            const isSignal = entry.kind === "signal";
            const property = {
                configurable: true, enumerable: false,
                get: function () {
                    const value = native.get(id, this);
                    if (isSignal)
                        hide(value, "__owner", this);
                    return value;
                },
            };
            if (!isSignal)
                property.set = function (value) { native.set(id, this, value); keep(this, name, value); };
            Object.defineProperty(target, name, property);
        } else if (entry.kind === "static") {
            hide(target, name, (...args) => native.callStatic(id, args));
        } else {
            const keeps = /^(set|install)/.test(name);
            hide(target, name, function (...args) {
                const result = native.call(id, this, args);
                if (keeps)
                    args.forEach((value, i) => keep(this, name + i, value));
                return result;
            });
        }
    }

    class Root {
        toString() { return `[qt.${this.constructor.name}]`; }
    }
    prelude.defineClass = function (description) {
        const Base = description.base < 0 ? Root : prelude.classes[description.base];
        const index = description.index, name = description.name;
        const C = class extends Base {
            constructor(...args) {
                super(wrapperTag);
                if (args[0] !== wrapperTag)
                    native.construct(this, index, Object.getPrototypeOf(this), args);
            }
        };
        Object.defineProperty(C, "name", { value: name, configurable: true });
        hide(C, "__class", index);
        hide(C.prototype, "__bound", index);
        for (const one of description.enums) {
            C[one.name] = one.values;
            for (const key of Object.keys(one.values))
                if (!(key in C))
                    C[key] = one.values[key];
        }
        for (const entry of description.entries)
            define(C.prototype, entry.kind === "static" ? C : C.prototype, entry);
        for (const mixin of description.mixins)
            for (const key of Object.getOwnPropertyNames(prelude.classes[mixin].prototype))
                if (!(key in C.prototype))
                    Object.defineProperty(C.prototype, key,
                                          Object.getOwnPropertyDescriptor(prelude.classes[mixin].prototype, key));
        prelude.classes[index] = C;
        return C;
    };

    function show(value, depth) {
        if (typeof value === "string")
            return depth ? JSON.stringify(value) : value;
        if (value === null || typeof value !== "object")
            return String(value);
        if (value instanceof Error)
            return String(value);
        if (value.__h)
            return String(value);
        if (depth > 4)
            return "...";
        if (Array.isArray(value))
            return "[" + value.map(item => show(item, depth + 1)).join(", ") + "]";
        if (value instanceof Date || value instanceof ArrayBuffer)
            return String(value);
        const parts = Object.keys(value).map(key => key + ": " + show(value[key], depth + 1));
        return "{" + parts.join(", ") + "}";
    }
    const line = args => args.map(value => show(value, 0)).join(" ");
    global.console = {
        log: (...args) => native.print(line(args), false),
        info: (...args) => native.print(line(args), false),
        debug: (...args) => native.print(line(args), false),
        warn: (...args) => native.print(line(args), true),
        error: (...args) => native.print(line(args), true),
    };
    global.setTimeout = (f, ms, ...args) => native.startScriptTimer(args.length ? () => f(...args) : f, ms || 0, false);
    global.setInterval = (f, ms, ...args) => native.startScriptTimer(args.length ? () => f(...args) : f, ms || 0, true);
    global.clearTimeout = global.clearInterval = id => native.stopScriptTimer(id);
    global.sleep = ms => { const end = Date.now() + ms; do native.turn(Math.max(0, Math.min(20, end - Date.now()))); while (Date.now() < end); };
    global.wait = function (promise) {
        if (!promise || typeof promise.then !== "function")
            return promise;
        const state = prelude.watch(promise);
        while (!state.done)
            native.turn(20);
        if (state.failed)
            throw state.error;
        return state.value;
    };
    global.exit = code => native.exit(code === undefined ? 0 : code);

    const text = function (what, value) {
        if (typeof value !== "string")
            throw new TypeError(`${what}: String expected, got ${value === null ? "none" : typeof value}.`);
        return value;
    };
    global.readFile = path => native.readFile(text("readFile", path));
    global.writeFile = (path, content) => native.writeFile(text("writeFile", path), text("writeFile", content));

    // Databases.
    prelude.installDatabases = function (databases) {
        class Node {
            constructor(handle) { hide(this, "__n", handle); }
            get kind() { return this.__n.kind(); }
            get name() { return this.__n.name(); }
            get properties() { return this.__n.properties(); }
            property(id) { return this.__n.property(id); }
            children(kind) { return this.__n.children(kind || "").map(handle => new Node(handle)); }
            find(path) {
                let node = this;
                for (const name of text("find", path).split("/")) {
                    node = node.children().find(child => child.name === name);
                    if (!node)
                        throw new Error(`There is no "${name}" in "${path}".`);
                }
                return node;
            }
        }
        class Connection {
            constructor(handle) { hide(this, "__c", handle); }
            get name() { return this.__c.name(); }
            get databases() { return this.__c.databases().map(handle => new Database(handle)); }
        }
        class Database {
            constructor(handle) { hide(this, "__d", handle); }
            get name() { return this.__d.name(); }
            get path() { return this.__d.path(); }
            get isOpen() { return this.__d.isOpen(); }
            get connection() { return new Connection(this.__d.connection()); }
            query(sql, binds) { return this.__d.query(text("query", sql), binds || []); }
            execute(sql, binds) { return this.__d.execute(text("execute", sql), binds || []); }
            get tree() { return new Node(this.__d.node()); }
            find(path) { return this.tree.find(path); }
            dump(file, options) { return this.__d.dump(text("dump", file), options || {}); }
            load(file, options) { return this.__d.load(text("load", file), options || {}); }
            close() { return this.__d.close(); }
        }
        prelude.setConnected = function (connection, database) {
            global.connection = connection ? new Connection(connection) : null;
            global.database = database ? new Database(database) : null;
        };
        global.db = {
            open: (location, options) => new Database(databases.open(text("db.open", location), !!(options && options.readOnly))),
            create: location => new Database(databases.create(text("db.create", location))),
            get current() { const handle = databases.current(); return handle ? new Database(handle) : null; },
            get connections() { return databases.connections().map(handle => new Connection(handle)); },
        };
    };
    return prelude;
}))JS";

} // namespace orbis
