-- What a program asks for whose user is at the provider, as the query of its address; empty for the page itself.
ALTER TABLE provider_visit ADD COLUMN wish TEXT NOT NULL DEFAULT '';
