-- Statements end with a semicolon at the end of a line. @ID@ is a number that the database gives and never gives again.
-- Times are milliseconds since 1970, in UTC.

CREATE TABLE tenant (
    id @ID@,
    name VARCHAR(64) NOT NULL UNIQUE,
    created_at BIGINT NOT NULL
);

CREATE TABLE account (
    id @ID@,
    tenant_id BIGINT NOT NULL REFERENCES tenant (id),
    name VARCHAR(128) NOT NULL,
    password_hash VARCHAR(256) NOT NULL,
    disabled SMALLINT NOT NULL DEFAULT 0,
    created_at BIGINT NOT NULL,
    UNIQUE (tenant_id, name)
);

CREATE TABLE workspace (
    id @ID@,
    tenant_id BIGINT NOT NULL REFERENCES tenant (id),
    name VARCHAR(255) NOT NULL,
    created_at BIGINT NOT NULL,
    UNIQUE (tenant_id, name)
);

-- Workspace 0 stands for all of the tenant's.
CREATE TABLE membership (
    account_id BIGINT NOT NULL REFERENCES account (id),
    workspace_id BIGINT NOT NULL,
    role SMALLINT NOT NULL,
    PRIMARY KEY (account_id, workspace_id)
);

CREATE TABLE consumer (
    id @ID@,
    tenant_id BIGINT NOT NULL REFERENCES tenant (id),
    consumer_key VARCHAR(64) NOT NULL UNIQUE,
    label VARCHAR(255) NOT NULL,
    created_at BIGINT NOT NULL
);

CREATE TABLE token (
    id @ID@,
    account_id BIGINT NOT NULL REFERENCES account (id),
    consumer_id BIGINT REFERENCES consumer (id),
    selector VARCHAR(32) NOT NULL UNIQUE,
    hash VARCHAR(64) NOT NULL,
    session_hash VARCHAR(64) NOT NULL,
    scope SMALLINT NOT NULL,
    label VARCHAR(255) NOT NULL,
    created_at BIGINT NOT NULL,
    expires_at BIGINT NOT NULL
);

CREATE INDEX token_account ON token (account_id);

CREATE TABLE nonce (
    token_key VARCHAR(64) NOT NULL,
    stamp BIGINT NOT NULL,
    nonce VARCHAR(64) NOT NULL,
    PRIMARY KEY (token_key, stamp, nonce)
);

CREATE TABLE throttle (
    subject VARCHAR(64) NOT NULL PRIMARY KEY,
    failures BIGINT NOT NULL,
    failed_at BIGINT NOT NULL
);

CREATE TABLE item (
    id @ID@,
    tenant_id BIGINT NOT NULL REFERENCES tenant (id),
    workspace_id BIGINT NOT NULL REFERENCES workspace (id),
    caption VARCHAR(255) NOT NULL,
    description TEXT NOT NULL,
    revision BIGINT NOT NULL,
    created_by BIGINT NOT NULL REFERENCES account (id),
    created_at BIGINT NOT NULL,
    changed_at BIGINT NOT NULL,
    deleted_at BIGINT
);

CREATE INDEX item_workspace ON item (workspace_id, id);

CREATE TABLE item_link (
    item_id BIGINT NOT NULL REFERENCES item (id),
    linked_id BIGINT NOT NULL REFERENCES item (id),
    created_at BIGINT NOT NULL,
    PRIMARY KEY (item_id, linked_id)
);

CREATE TABLE comment (
    id @ID@,
    item_id BIGINT NOT NULL REFERENCES item (id),
    author_id BIGINT NOT NULL REFERENCES account (id),
    body TEXT NOT NULL,
    created_at BIGINT NOT NULL
);

CREATE INDEX comment_item ON comment (item_id, id);

CREATE TABLE favourite (
    account_id BIGINT NOT NULL REFERENCES account (id),
    item_id BIGINT NOT NULL REFERENCES item (id),
    created_at BIGINT NOT NULL,
    PRIMARY KEY (account_id, item_id)
);

CREATE TABLE blob (
    sha256 VARCHAR(64) NOT NULL PRIMARY KEY,
    size BIGINT NOT NULL,
    created_at BIGINT NOT NULL
);

CREATE TABLE attachment (
    id @ID@,
    item_id BIGINT NOT NULL REFERENCES item (id),
    name VARCHAR(255) NOT NULL,
    doc_type VARCHAR(64) NOT NULL,
    latest BIGINT NOT NULL,
    created_by BIGINT NOT NULL REFERENCES account (id),
    created_at BIGINT NOT NULL,
    deleted_at BIGINT
);

CREATE INDEX attachment_item ON attachment (item_id, id);

CREATE TABLE version (
    attachment_id BIGINT NOT NULL REFERENCES attachment (id),
    number BIGINT NOT NULL,
    label VARCHAR(255) NOT NULL,
    author_id BIGINT NOT NULL REFERENCES account (id),
    created_at BIGINT NOT NULL,
    sha256 VARCHAR(64) NOT NULL REFERENCES blob (sha256),
    made_from BIGINT NOT NULL,
    PRIMARY KEY (attachment_id, number)
);

CREATE INDEX version_blob ON version (sha256);

CREATE TABLE upload (
    id VARCHAR(64) NOT NULL PRIMARY KEY,
    account_id BIGINT NOT NULL REFERENCES account (id),
    length BIGINT NOT NULL,
    wanted_sha256 VARCHAR(64) NOT NULL,
    sha256 VARCHAR(64),
    expires_at BIGINT NOT NULL
);

CREATE INDEX upload_expiry ON upload (expires_at);

CREATE TABLE idempotency (
    account_id BIGINT NOT NULL REFERENCES account (id),
    idempotency_key VARCHAR(255) NOT NULL,
    request VARCHAR(64) NOT NULL,
    status SMALLINT NOT NULL,
    headers TEXT NOT NULL,
    body TEXT NOT NULL,
    created_at BIGINT NOT NULL,
    PRIMARY KEY (account_id, idempotency_key)
);

CREATE TABLE event (
    serial @ID@,
    tenant_id BIGINT NOT NULL REFERENCES tenant (id),
    workspace_id BIGINT NOT NULL,
    account_id BIGINT NOT NULL REFERENCES account (id),
    audience_id BIGINT,
    kind VARCHAR(32) NOT NULL,
    item_id BIGINT,
    attachment_id BIGINT,
    version BIGINT,
    created_at BIGINT NOT NULL
);

CREATE INDEX event_tenant ON event (tenant_id, serial);

CREATE TABLE audit (
    id @ID@,
    tenant_id BIGINT,
    account_id BIGINT,
    action VARCHAR(64) NOT NULL,
    subject VARCHAR(255) NOT NULL,
    address VARCHAR(64) NOT NULL,
    created_at BIGINT NOT NULL
);
