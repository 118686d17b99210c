-- Whom an outside provider of sign-ins knows, by its own lasting name for them.
CREATE TABLE identity (
    issuer VARCHAR(255) NOT NULL,
    subject VARCHAR(255) NOT NULL,
    account_id BIGINT NOT NULL REFERENCES account (id),
    created_at BIGINT NOT NULL,
    PRIMARY KEY (issuer, subject)
);

CREATE INDEX identity_account ON identity (account_id);

-- A browser that is at the provider; with an account, to be linked to it.
CREATE TABLE provider_visit (
    hash VARCHAR(64) NOT NULL PRIMARY KEY,
    account_id BIGINT REFERENCES account (id),
    verifier VARCHAR(64) NOT NULL,
    nonce VARCHAR(64) NOT NULL,
    expires_at BIGINT NOT NULL
);
