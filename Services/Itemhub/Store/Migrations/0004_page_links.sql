-- What signs a browser in to the dashboard once, without a password: the program that has a token asks for it.
CREATE TABLE page_link (
    hash VARCHAR(64) NOT NULL PRIMARY KEY,
    account_id BIGINT NOT NULL REFERENCES account (id),
    scope SMALLINT NOT NULL,
    expires_at BIGINT NOT NULL
);
