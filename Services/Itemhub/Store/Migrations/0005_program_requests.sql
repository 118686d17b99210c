-- What the dashboard asks the account's program for, which takes it by its number or by a ticket.
CREATE TABLE program_request (
    id @ID@,
    account_id BIGINT NOT NULL REFERENCES account (id),
    ticket_hash VARCHAR(64) NOT NULL UNIQUE,
    name VARCHAR(64) NOT NULL,
    arguments TEXT NOT NULL,
    state SMALLINT NOT NULL,
    detail TEXT NOT NULL,
    expires_at BIGINT NOT NULL
);

CREATE INDEX program_request_account ON program_request (account_id, expires_at);

ALTER TABLE event ADD COLUMN request_id BIGINT;
